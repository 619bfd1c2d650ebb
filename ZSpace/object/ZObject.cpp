// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

#include "ZSpace/object/ZObject.h"

namespace ZSpace {

ZObject::ZObject() noexcept = default;

ZObject::~ZObject() = default;

// Values hold references to `ZObject`, which is incomplete in their layer and complete here.
template TZReferenceable<TZRefCounter<int>>* ZReference<ZObject>::countedPartOf(ZObject*) noexcept;
template void ZReference<ZObject>::destroy(ZObject*) noexcept;

} // namespace ZSpace
