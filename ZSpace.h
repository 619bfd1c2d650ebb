// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

#pragma once

/// The whole framework in one include. Code that needs one class includes that class's own header instead.

#include "app/LogFrontEnd.h"
#include "core/ZArray.h"
#include "core/ZDelegate.h"
#include "core/ZException.h"
#include "core/ZExceptionHandler.h"
#include "core/ZInvokable.h"
#include "core/ZList.h"
#include "core/ZMap.h"
#include "core/ZMemory.h"
#include "core/ZRef.h"
#include "core/ZReference.h"
#include "core/ZSet.h"
#include "core/ZThread.h"
#include "core/ZThreadLock.h"
#include "core/z_dbg.h"
#include "log/ZTransferLog.h"
#include "string/ZGStr.h"
#include "string/ZMStr.h"
#include "string/ZStrToken.h"
