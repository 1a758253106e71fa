# SPDX-License-Identifier: MIT
# Each kind of clip pasted into real programs. The small programs run by default, the big ones
# by their label.
function(quillo_copy_back_test name label timeout)
  add_test(NAME ${name}
    COMMAND "${CMAKE_SOURCE_DIR}/tests/desktop/with_display" /usr/bin/python3
            "${CMAKE_SOURCE_DIR}/tests/desktop/test_copy_back.py" ${ARGN})
  set_tests_properties(${name} PROPERTIES
    LABELS ${label} TIMEOUT ${timeout} SKIP_REGULAR_EXPRESSION "OK \\(skipped"
    ENVIRONMENT "QUILLO_PROGRAM=$<TARGET_FILE:quillo>;QUILLO_REPLAY_OWNER=$<TARGET_FILE:replay_owner>;\
QUILLO_READ_SELECTION=$<TARGET_FILE:read_selection>;QUILLO_RICH_EDITOR=$<TARGET_FILE:rich_editor>")
endfunction()

quillo_copy_back_test(copy_back desktop 300 EditorTest VteTest XtermTest QtEditorTest RawTest)
quillo_copy_back_test(copy_back_chromium big 600 ChromiumTest)
quillo_copy_back_test(copy_back_office big 600 WriterTest CalcTest)
quillo_copy_back_test(copy_back_thunar big 600 FileManagerTest.test_thunar)
quillo_copy_back_test(copy_back_pcmanfm big 600 FileManagerTest.test_pcmanfm)
