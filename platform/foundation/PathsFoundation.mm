// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

#include "platform/foundation/RaisingFoundation.h"

namespace NS {

Array searchPathForDirectoriesInDomains(
    SearchPathDirectory directory, SearchPathDomainMask domains, ExpandTilde expandTilde)
{
    return Array::adopt(detail::raising([&] {
        return detail::shared(
            NSSearchPathForDirectoriesInDomains(static_cast<NSSearchPathDirectory>(directory),
                static_cast<NSSearchPathDomainMask>(domains), expandTilde == ExpandTilde::Yes));
    }));
}

} // namespace NS
