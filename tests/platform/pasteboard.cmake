# SPDX-License-Identifier: MIT
quillo_test(platform_pasteboard
  SOURCES pasteboard_reading_test.cpp pasteboard_formats_test.cpp pasteboard_keeper_test.cpp
  DEPENDS quillo_platform quillo_platform_x11_pasteboard)
