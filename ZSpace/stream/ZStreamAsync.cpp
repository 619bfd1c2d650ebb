// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

#include "ZSpace/stream/ZStreamAsync.h"

namespace ZSpace {

template class ZStreamAsync<char, ZStreamTransaction>;
template class ZStreamEx<char, ZStreamTransaction>;

} // namespace ZSpace
