# SPDX-FileCopyrightText: 2026 The Tavrel developers
# SPDX-License-Identifier: GPL-2.0-or-later
# 32-bit big-endian Linux; programs run under qemu.
set(CMAKE_SYSTEM_NAME Linux)
set(CMAKE_SYSTEM_PROCESSOR ppc)
set(CMAKE_CXX_COMPILER powerpc-linux-gnu-g++)
set(CMAKE_C_COMPILER powerpc-linux-gnu-gcc)
set(CMAKE_CROSSCOMPILING_EMULATOR qemu-ppc -L /usr/powerpc-linux-gnu)
include(${CMAKE_CURRENT_LIST_DIR}/libraries.cmake)
