# Others that keep such data, as far as they are there: each is measured in the same program as zor.
# scripts/bench-dependencies installs them all.
find_package(PkgConfig QUIET)

# add_peer(name MODULE module-of-pkg-config PACKAGE debian-package SOURCES file...)
function(add_peer name)
  cmake_parse_arguments(arg "" "MODULE;PACKAGE" "SOURCES" ${ARGN})
  if(PKG_CONFIG_FOUND)
    pkg_check_modules(bench_${name} QUIET IMPORTED_TARGET "${arg_MODULE}")
  endif()
  if(NOT bench_${name}_FOUND)
    message(STATUS "No benchmarks beside ${name}: it comes with ${arg_PACKAGE} (and pkg-config)")
    return()
  endif()
  message(STATUS "Benchmarks beside ${name} ${bench_${name}_VERSION}")
  target_sources(zor_bench PRIVATE ${arg_SOURCES})
  target_link_libraries(zor_bench PRIVATE PkgConfig::bench_${name})
endfunction()

target_sources(zor_bench PRIVATE peer_hashmap.cpp) # of the standard library
add_peer(libyang MODULE libyang>=2 PACKAGE libyang2-dev SOURCES peer_libyang.cpp yang.cpp)
add_peer(pugixml MODULE pugixml PACKAGE libpugixml-dev SOURCES peer_pugixml.cpp)
add_peer(libxml2 MODULE libxml-2.0 PACKAGE libxml2-dev SOURCES peer_libxml2.cpp)
add_peer(glib MODULE glib-2.0 PACKAGE libglib2.0-dev SOURCES peer_glib.cpp)
add_peer(libconfig MODULE libconfig PACKAGE libconfig-dev SOURCES peer_libconfig.cpp)
add_peer(sqlite MODULE sqlite3 PACKAGE libsqlite3-dev SOURCES peer_sqlite.cpp)
