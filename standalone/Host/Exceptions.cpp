#include <utility>

#include "host/Exceptions.h"
#include "standalone/Host/Calls.h"

// The constructors are not shown to the observer of calls: an observer throws this exception, and a
// copy is made while it is thrown.

ErrorText::ErrorText(std::string text) : message(std::move(text)) {}

ErrorText::ErrorText(const ErrorText& other) = default;

ErrorText::~ErrorText() { velahost::Released("ErrorText::~ErrorText"); }
