// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

#include "ZSpace/stream/ZStream.h"

namespace ZSpace {

template class ZStreamBase<ZStreamTransaction>;
template class ZInStream<char, ZStreamTransaction>;
template class ZOutStream<char, ZStreamTransaction>;
template class ZStream<char, ZStreamTransaction>;

} // namespace ZSpace
