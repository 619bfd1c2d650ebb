// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

#pragma once

/// 1 when debug lines are written, which the log front end decides once, at start; it never goes back to 0.
/// Stands here, below the front end, because objects that log look at it as well.
extern unsigned char debugLogEnabled;
