// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

#include "ZSpace/value/ZTime.h"

unsigned short currentYear();
unsigned short currentYear()
{
    return ZSpace::ZTime(true).Year();
}
