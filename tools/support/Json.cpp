// Boost.JSON is header-only here; this is the one place of the tools that compiles it.
#include <boost/json/src.hpp>
