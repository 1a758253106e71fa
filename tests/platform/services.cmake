# SPDX-License-Identifier: MIT
quillo_test(platform_services
  SOURCES user_defaults_test.cpp json_user_defaults_test.cpp uniform_types_test.cpp
          file_bookmark_test.cpp hot_key_codes_test.cpp desktop_entry_test.cpp
           autostart_login_item_test.cpp desktop_entry_index_test.cpp paste_steps_test.cpp
  DEPENDS quillo_platform_freedesktop quillo_platform_x11 quillo_model)

# The same services against a real X server, real programs and three ways to manage windows.
set(contract_desktop_dir "${CMAKE_SOURCE_DIR}/tests/contract_desktop")
quillo_test(contract_desktop DISPLAY LABEL contract
  SOURCES ${contract_desktop_dir}/desktop_probe.h ${contract_desktop_dir}/desktop_probe.cpp
          ${contract_desktop_dir}/hot_keys_test.cpp
          ${contract_desktop_dir}/key_event_poster_test.cpp
          ${contract_desktop_dir}/workspace_test.cpp
  DEPENDS quillo_platform_freedesktop quillo_platform_x11)
foreach(manager xfwm4 none)
  add_test(NAME contract_desktop_${manager}
    COMMAND "${CMAKE_SOURCE_DIR}/tests/desktop/with_display"
            $<TARGET_FILE:test_contract_desktop> --gtest_filter=X11Workspace*)
  set_tests_properties(contract_desktop_${manager} PROPERTIES
    LABELS contract TIMEOUT 300
    ENVIRONMENT "WM=${manager};${QUILLO_TEST_ENVIRONMENT}")
endforeach()
