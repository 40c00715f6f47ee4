# The libraries that a cross build cannot take from the host as packages: the
# host's copies are built for Linux, or their include folder is the host's
# /usr/include, whose C headers would shadow the target's.

# nlohmann/json is header-only: its headers alone, copied beside the build.
set(rm8_host_headers ${CMAKE_BINARY_DIR}/host-headers)
file(COPY /usr/include/nlohmann DESTINATION ${rm8_host_headers})
add_library(nlohmann_json::nlohmann_json INTERFACE IMPORTED GLOBAL)
set_target_properties(nlohmann_json::nlohmann_json PROPERTIES INTERFACE_INCLUDE_DIRECTORIES ${rm8_host_headers})
