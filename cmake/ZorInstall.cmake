# Installation, and the package that find_package(zor) finds.
include(CMakePackageConfigHelpers)

set(package_dir "${CMAKE_INSTALL_LIBDIR}/cmake/zor")
install(TARGETS zor EXPORT zorTargets
  LIBRARY DESTINATION "${CMAKE_INSTALL_LIBDIR}"
  ARCHIVE DESTINATION "${CMAKE_INSTALL_LIBDIR}")
install(DIRECTORY include/zor DESTINATION "${CMAKE_INSTALL_INCLUDEDIR}" FILES_MATCHING PATTERN "*.h")
install(EXPORT zorTargets NAMESPACE zor:: DESTINATION "${package_dir}")

configure_package_config_file(cmake/zorConfig.cmake.in
  "${PROJECT_BINARY_DIR}/zorConfig.cmake" INSTALL_DESTINATION "${package_dir}")
write_basic_package_version_file("${PROJECT_BINARY_DIR}/zorConfigVersion.cmake"
  COMPATIBILITY SameMajorVersion)
install(FILES "${PROJECT_BINARY_DIR}/zorConfig.cmake" "${PROJECT_BINARY_DIR}/zorConfigVersion.cmake"
  DESTINATION "${package_dir}")
