# Gives a Windows program the manifest that makes UTF-8 its code page.
enable_language(RC)
function(rm8_use_utf8_code_page target)
  set(manifest ${PROJECT_SOURCE_DIR}/cmake/windows/utf8-code-page.manifest)
  set(resource ${CMAKE_CURRENT_BINARY_DIR}/${target}-manifest.rc)
  # 1 is the program's own manifest, 24 the resource type of manifests.
  file(CONFIGURE OUTPUT ${resource} CONTENT "1 24 \"${manifest}\"\n")
  target_sources(${target} PRIVATE ${resource})
  set_property(SOURCE ${resource} APPEND PROPERTY OBJECT_DEPENDS ${manifest})
endfunction()
