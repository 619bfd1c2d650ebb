// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

#include "ZSpace/object/ZObject.h"

namespace ZSpace {

ZObject::ZObject() noexcept = default;

ZObject::~ZObject() = default;

// Values hold references to objects whose class is incomplete in their layer; it is complete here.
template TZReferenceable<TZRefCounter<int>>* ZReference<ZObject>::countedPartOf(ZObject*) noexcept;
template void ZReference<ZObject>::destroy(ZObject*) noexcept;

} // namespace ZSpace
