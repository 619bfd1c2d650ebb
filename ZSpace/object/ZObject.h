// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

#pragma once

#include "ZSpace/object/ZDispatchable.h"

namespace ZSpace {

/// The root class of objects that can be invoked by name and shared through `ZReference<ZObject>`.
class ZObject : public ZDispatchable<ZThreadLock_T<pthread_mutex_t>> {
public:
    ZObject() noexcept;
    ~ZObject() override;
};

} // namespace ZSpace
