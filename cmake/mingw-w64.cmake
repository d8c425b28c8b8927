# Windows x64 by mingw-w64 with posix threads; what it builds runs under Wine.
set(CMAKE_SYSTEM_NAME Windows)
set(CMAKE_SYSTEM_PROCESSOR x86_64)
set(CMAKE_C_COMPILER x86_64-w64-mingw32-gcc-posix)
set(CMAKE_CXX_COMPILER x86_64-w64-mingw32-g++-posix)
set(CMAKE_RC_COMPILER x86_64-w64-mingw32-windres)
cmake_path(GET CMAKE_CURRENT_LIST_DIR PARENT_PATH project_folder)
set(CMAKE_FIND_ROOT_PATH /usr/x86_64-w64-mingw32 ${project_folder}/build/deps)
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE ONLY)
set(CMAKE_CROSSCOMPILING_EMULATOR ${project_folder}/scripts/wine-run)
# The compiler's runtime goes into each file: nothing but wexpol.dll need be shipped. Memory still
# passes freely between library and host, since both take it from the system's C runtime.
set(CMAKE_EXE_LINKER_FLAGS_INIT -static)
set(CMAKE_SHARED_LINKER_FLAGS_INIT -static)
