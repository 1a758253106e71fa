# SPDX-License-Identifier: MIT
quillo_test(platform_sound SOURCES sounds_test.cpp DEPENDS quillo_platform_sound)
