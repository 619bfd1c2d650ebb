# SPDX-FileCopyrightText: 2026 The ZSpace authors
# SPDX-License-Identifier: MIT
"""GDB runs this when it loads the shared library, after which it is named when it is installed:
share/gdb/auto-load/<directory of the library>/libzspace.so.<version>-gdb.py
"""

import sys

import gdb

sys.path.insert(0, __file__.split("/gdb/auto-load/")[0] + "/zspace/debugger")
import zspace_gdb  # noqa: E402

zspace_gdb.register(gdb.current_objfile())
