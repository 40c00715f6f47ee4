# The tests of a cross build run under Wine in one session: a ctest fixture
# starts it before the first test program and stops it after the last.
add_test(NAME wine_session_start COMMAND sh ${PROJECT_SOURCE_DIR}/cmake/wine-session.sh start)
add_test(NAME wine_session_stop COMMAND sh ${PROJECT_SOURCE_DIR}/cmake/wine-session.sh stop)
set_tests_properties(wine_session_start PROPERTIES FIXTURES_SETUP wine TIMEOUT 120)
set_tests_properties(wine_session_stop PROPERTIES FIXTURES_CLEANUP wine)
