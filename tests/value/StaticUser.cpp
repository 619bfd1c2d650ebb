// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

#include "ZSpace/object/ZObject.h"
#include "ZSpace/system/ZAppContext.h"
#include "ZSpace/value/ZValue.h"
#include "ZSpace/value/ZValueArray.h"

#include <cstdio>
#include <cstdlib>

namespace {

using namespace ZSpace;

/// Whether times, GUIDs and values of every kind work at this point of the program's lifetime.
bool everythingWorks()
{
    ZMStr<char> line;
    ZValueArrayBase array(ZTypeId_int);
    for (ZTypeId tag = 1; tag != 0; tag <<= 1) {
        const TZValueBase<ZTypeId>* value = TZValueBase<ZTypeId>::createType(tag);
        array.ArrayAdd(*value);
        value->appendTo(line);
        delete value;
    }
    ZGUID guid;
    guid.generate();
    const TZValueBase<ZTypeId> object{ZReference<ZObject>(new ZObject)};
    return array.ArrayItemCount() == 32 && !line.isEmpty() && !guid.isCleared()
        && ZTime(true) > "2024-01-01T00:00:00" && !ZAppContext().Path().isEmpty() && object == object;
}

/// Constructed before `main` and destroyed after it.
class StaticUser {
public:
    StaticUser() { report("before main"); }
    StaticUser(const StaticUser&) = delete;
    StaticUser& operator=(const StaticUser&) = delete;
    ~StaticUser() { report("after main"); }

    static void report(const char* when)
    {
        std::printf("%s: %s\n", when, everythingWorks() ? "fine" : "broken");
        std::fflush(stdout);
    }
};

const StaticUser s_user;

} // namespace

int main()
{
    StaticUser::report("in main");
    return 0;
}
