#include "cli/reporting/html_text.h"

#include "cli/reporting/one_line.h"

std::string html_text(std::string_view text) {
    std::string escaped;
    for (const char unit : one_line(text))
        switch (unit) {
        case '&':
            escaped += "&amp;";
            break;
        case '<':
            escaped += "&lt;";
            break;
        case '>':
            escaped += "&gt;";
            break;
        case '"':
            escaped += "&quot;";
            break;
        default:
            escaped += unit;
        }
    return escaped;
}
