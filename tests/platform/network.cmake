# SPDX-License-Identifier: MIT
find_program(QUILLO_DBUS_DAEMON dbus-daemon REQUIRED)
quillo_test(platform_network LABEL contract
  SOURCES public_address_test.cpp http_client_test.cpp network_path_monitor_test.cpp
  DEPENDS quillo_platform_network quillo_platform_freedesktop)
target_compile_definitions(test_platform_network PRIVATE
  QUILLO_DBUS_DAEMON="${QUILLO_DBUS_DAEMON}")
