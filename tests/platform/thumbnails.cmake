# SPDX-License-Identifier: MIT
find_program(QUILLO_DBUS_DAEMON dbus-daemon REQUIRED)
quillo_test(platform_thumbnails
  SOURCES thumbnail_cache_test.cpp thumbnail_service_test.cpp thumbnail_files.h
  DEPENDS quillo_platform_freedesktop quillo_platform_images)
target_compile_definitions(test_platform_thumbnails PRIVATE
  QUILLO_DBUS_DAEMON="${QUILLO_DBUS_DAEMON}")
