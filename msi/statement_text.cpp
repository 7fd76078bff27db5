#include "msi/statement_text.h"

namespace {

bool IsPlaceholder(const wchar_t* text)
{
    return text[0] == L'%' && (text[1] == L's' || text[1] == L'd');
}

} // namespace

CString FillStatement(const wchar_t* statement, std::initializer_list<StatementValue> values)
{
    CString filled;
    auto value = values.begin();
    while (*statement) {
        if (IsPlaceholder(statement)) {
            if (value != values.end()) {
                filled += (value++)->GetText();
            }
            statement += 2;
            continue;
        }
        int plain = 1;
        while (statement[plain] && !IsPlaceholder(statement + plain)) {
            ++plain;
        }
        filled.Append(statement, plain);
        statement += plain;
    }
    return filled;
}
