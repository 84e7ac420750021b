// Visibility of the exported interface.
//
// The library is built with hidden symbols; ZOR_API marks what a host may use. Whatever a header
// in include/zor/ declares with it is part of the interface, everything else is internal.
// ZOR_HIDDEN takes a private member of an exported class out of it again.

#pragma once

#define ZOR_API __attribute__((visibility("default")))
#define ZOR_HIDDEN __attribute__((visibility("hidden")))
