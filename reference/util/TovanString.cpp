#include "platform/util/TovanString.h"

TovanString::TovanString(const char* text) : text_(text ? text : "") {}

const char* TovanString::c_str() const { return text_.c_str(); }
