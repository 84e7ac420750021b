// Makes the compiler refuse a static object that is not initialised before all code runs.

#pragma once

#ifdef __clang__
#define ZOR_CONSTINIT [[clang::require_constant_initialization]]
#else
#define ZOR_CONSTINIT __constinit
#endif
