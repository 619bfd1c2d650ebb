// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

#include "ZSpace/platform/foundation/RaisingFoundation.h"

// In a file of its own, so that a test program can define this function itself.

namespace ZSpace::NS {

Array searchPathForDirectoriesInDomains(
    SearchPathDirectory directory, SearchPathDomainMask domains, ExpandTilde expandTilde)
{
    return Array::adopt(detail::raising([&] {
        return detail::retained(
            NSSearchPathForDirectoriesInDomains(static_cast<NSSearchPathDirectory>(directory),
                static_cast<NSSearchPathDomainMask>(domains), expandTilde == ExpandTilde::Yes));
    }));
}

} // namespace ZSpace::NS
