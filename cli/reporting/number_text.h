#pragma once

#include <string>

// With this many digits after the point: 5 and 1 give "5.0".
[[nodiscard]] std::string fixed(double value, int digits);

// The same without zeros at the end: 5 and 1 give "5".
[[nodiscard]] std::string shortest(double value, int digits);
