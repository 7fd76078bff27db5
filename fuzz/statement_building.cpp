// Any texts and numbers as the columns of all rows: the statement is the template around them, whole.
#include "fuzz/wide_input.h"
#include "msi/row_statements.h"
#include "msi/statement_text.h"

namespace {

// The lines of the input, one a column, again from the first when they are used up.
class Values
{
public:
    explicit Values(const CString& text) : m_text(text), m_rest(text) {}
    CString Text()
    {
        if (m_rest.IsEmpty()) {
            m_rest = m_text;
        }
        return FirstLine(CString(m_rest), m_rest);
    }
    int Number()
    {
        const CString text = Text();
        return (text[0] << 16) ^ (text.IsEmpty() ? 0 : text[text.GetLength() - 1]) ^ text.GetLength();
    }

private:
    CString m_text;
    CString m_rest;
};

template <class Columns>
void Build(const Columns& row)
{
    for (const MsiRowAction action : {MsiRowAction::Insert, MsiRowAction::Update, MsiRowAction::Delete}) {
        const CString statement = BuildRowStatement(action, row);
        const int backquote = statement.Find(L'`');
        if (!statement.IsEmpty() && (backquote < 0 || backquote > 12)) {
            __builtin_trap(); // the table's name stands in front of all values
        }
    }
}

// The values of a template that is nothing but placeholders come back joined.
void CheckFilling(const CString& first, int number, const CString& second)
{
    const CString expected =
        CString(first.GetString()) + L"|" + NumberText(number) + L"|" + CString(second.GetString());
    if (FillTemplate(L"%s|%d|%s", {first, number, second}) != expected ||
        FillTemplate(L"%d|%s|%d", {first, number, second}) != expected) {
        __builtin_trap();
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const CString text = WideInput(data, size);
    Values values(text);
    const auto line = [&] { return values.Text(); };
    const auto number = [&] { return values.Number(); };
    CheckFilling(line(), number(), line());
    Build(ComponentColumns{line(), line(), line(), number(), line(), line()});
    Build(DirectoryColumns{line(), line(), line()});
    Build(CreateFolderColumns{line(), line()});
    Build(FeatureColumns{line(), line(), line(), line(), number(), number(), line(), number()});
    Build(FeatureComponentsColumns{line(), line()});
    Build(FileColumns{line(), line(), line(), number(), line(), line(), number(), number()});
    Build(ShortcutColumns{line(), line(), line(), line(), line(), line(), line(), number(), line(), number(),
                          number(), line()});
    Build(CustomFileColumns{line(), line(), number()});
    Build(CustomActionColumns{line(), number(), line(), line()});
    Build(InstallExecuteSequenceColumns{line(), line(), number()});
    // A format of the input's own: it must never be read as anything but text and the two placeholders.
    const CString filled = FillTemplate(text, {line(), number()});
    if (text.Find(L'%') < 0 && filled != CString(text.GetString())) {
        __builtin_trap();
    }
    return 0;
}
