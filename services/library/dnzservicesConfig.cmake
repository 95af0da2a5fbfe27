# The services of the gateway, for find_package(dnzservices): link with dnz::services and include
# "services/outer/ServiceCalls.h", for example. All paths are relative to this file, so that a staged
# installation can be used too.
cmake_path(SET dnzservices_root NORMALIZE "${CMAKE_CURRENT_LIST_DIR}/../../..")

if(NOT TARGET dnz::services)
  add_library(dnz::services STATIC IMPORTED)
  set_target_properties(dnz::services PROPERTIES
    IMPORTED_LOCATION "${dnzservices_root}/lib/libdnzservices.a"
    IMPORTED_LINK_INTERFACE_LANGUAGES CXX
    INTERFACE_INCLUDE_DIRECTORIES "${dnzservices_root}/include/dnz"
    INTERFACE_COMPILE_FEATURES cxx_std_20)
endif()
unset(dnzservices_root)
