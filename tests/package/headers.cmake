# Every exported header compiles alone, twice included, with the project's warnings.
file(GLOB exported_headers CONFIGURE_DEPENDS RELATIVE "${PROJECT_SOURCE_DIR}/include"
  "${PROJECT_SOURCE_DIR}/include/zor/*.h")
set(header_checks)
foreach(header ${exported_headers})
  string(MAKE_C_IDENTIFIER "${header}" name)
  set(source "${CMAKE_CURRENT_BINARY_DIR}/headers/${name}.cpp")
  file(CONFIGURE OUTPUT "${source}" CONTENT "#include \"${header}\"\n#include \"${header}\"\n")
  list(APPEND header_checks "${source}")
endforeach()
add_library(zor_header_checks OBJECT ${header_checks})
target_link_libraries(zor_header_checks PRIVATE zor::zor zor_warnings)
