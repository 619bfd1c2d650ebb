// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

#include "ZSpace/object/ZObject.h"

namespace ZSpace {

ZObject::ZObject() noexcept = default;

ZObject::~ZObject() = default;

// Values hold references to objects without knowing their class; it is known here.
template TZReferenceable<TZRefCounter<int>>* ZReference<ZObject>::countedPartOf(ZObject*) noexcept;
template void ZReference<ZObject>::destroy(ZObject*) noexcept;

} // namespace ZSpace
