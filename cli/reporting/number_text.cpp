#include "cli/reporting/number_text.h"

#include <iomanip>
#include <sstream>

std::string fixed(double value, int digits) {
    std::ostringstream text;
    text << std::fixed << std::setprecision(digits) << value;
    return text.str();
}

std::string shortest(double value, int digits) {
    std::string text = fixed(value, digits);
    if (text.find('.') == std::string::npos)
        return text;
    text.resize(text.find_last_not_of('0') + 1);
    if (text.back() == '.')
        text.pop_back();
    return text;
}
