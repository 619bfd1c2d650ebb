// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

#include "tests/support/PrivateRoot.h"

namespace ZSpace::Testing {

// Not possible without mount namespaces.

PrivateRoot::PrivateRoot() = default;

bool PrivateRoot::isPossible()
{
    return false;
}

Outcome PrivateRoot::run(const std::function<int()>&, Omit) const
{
    return {};
}

Outcome PrivateRoot::runProgram(
    const std::filesystem::path&, const std::function<void()>&, Omit, const std::vector<std::string>&) const
{
    return {};
}

} // namespace ZSpace::Testing
