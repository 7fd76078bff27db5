#include "setup/review_answers.h"

#include "setup/review_lines.h"

#include <algorithm>
#include <map>

namespace {

// "site_feed": "Site feed"
CString InWords(const CString& word)
{
    CString words = word;
    words.Replace(L"_", L" ");
    return words.Left(1).MakeUpper() + words.Mid(1);
}

bool IsWord(AnswerKind kind)
{
    return kind == AnswerKind::Radio || kind == AnswerKind::Check || kind == AnswerKind::Entry ||
           kind == AnswerKind::Choice || kind == AnswerKind::Clear;
}

CString FieldsInWords(const RecordedValue& value)
{
    CString fields;
    for (const CString& field : value.fields) {
        fields += (fields.IsEmpty() ? CString() : CString(L", ")) + L"\"" + field + L"\"";
    }
    return fields;
}

bool IsEmpty(const RecordedValue& value)
{
    return std::all_of(value.fields.begin(), value.fields.end(),
                       [](const CString& field) { return field.IsEmpty(); });
}

CString ValueInWords(const PageAnswerTable& table, const RecordedValue& value)
{
    const AnswerKey* const key = FindAnswerKey(table, value.strWord);
    if (IsEmpty(value)) {
        return L"nothing";
    }
    if (key && IsWord(key->kind)) {
        CString words = value.fields.front();
        words.Replace(L"_", L" ");
        return words;
    }
    return FieldsInWords(value);
}

class CPageReview
{
public:
    explicit CPageReview(const RecordedPage& page) : m_page(page) { m_node = Line(page.strTitle); }

    ReviewNode Make()
    {
        if (!m_page.bShown) {
            m_node.children.push_back(Line(L"Nobody went to this page: all stays as it was."));
        }
        AddValues();
        for (const RecordedQuestion& question : m_page.questions) {
            m_node.children.push_back(Line(L"Answer to the question \"" + InWords(question.pBox->role) +
                                           L"\": " + (question.bYes ? L"yes" : L"no")));
        }
        if (m_node.children.empty()) {
            m_node.children.push_back(Line(L"Nothing is entered here."));
        }
        return std::move(m_node);
    }

private:
    ReviewNode Line(const CString& text) const
    {
        ReviewNode node = ReviewLine(text);
        node.strPage = WizardExport(m_page.Page());
        node.strProductCode = m_page.product.strCode;
        return node;
    }

    // How many lines of one word are shown. A long list is cut, and what nobody changed goes first.
    struct Room
    {
        std::size_t changed = 0, others = 0;           // that come
        std::size_t shownChanged = 0, shownOthers = 0; // of them
        std::size_t left = 0;                          // to come still

        [[nodiscard]] std::size_t Rest() const { return changed + others - shownChanged - shownOthers; }
    };

    [[nodiscard]] std::map<CString, Room> DivideRoom() const
    {
        std::map<CString, Room> rooms;
        for (const RecordedValue& value : m_page.values) {
            Room& room = rooms[value.strWord];
            ++(value.bProposed ? room.others : room.changed);
            ++room.left;
        }
        for (auto& [word, room] : rooms) {
            room.shownChanged = std::min(room.changed, MOST_REVIEW_LINES);
            room.shownOthers = std::min(room.others, MOST_REVIEW_LINES - room.shownChanged);
        }
        return rooms;
    }

    void AddValues()
    {
        std::map<CString, Room> rooms = DivideRoom();
        std::map<CString, Room> open = rooms;
        for (const RecordedValue& value : m_page.values) {
            Room& room = open[value.strWord];
            std::size_t& shown = value.bProposed ? room.shownOthers : room.shownChanged;
            if (shown > 0) {
                --shown;
                Add(value);
            }
            const Room& whole = rooms[value.strWord];
            if (--room.left == 0 && whole.Rest() > 0) {
                AddRest(value.strWord, whole.Rest(), whole.changed - whole.shownChanged);
            }
        }
    }

    void Add(const RecordedValue& value)
    {
        ReviewNode node = Line(InWords(value.strWord) + L": " + ValueInWords(*m_page.pTable, value) +
                               (value.bKept ? L" (kept, but not in effect)" : L""));
        node.bChanged = !value.bProposed;
        m_node.children.push_back(std::move(node));
    }

    void AddRest(const CString& word, std::size_t count, std::size_t changed)
    {
        CString text = InWords(word) + L": and " + CountInWords(count, L"more", L"more");
        if (changed > 0) {
            text += L", of which " + CountInWords(changed, L"differs", L"differ") +
                    L" from what the page proposed";
        }
        ReviewNode node = Line(text);
        node.bChanged = changed > 0;
        m_node.children.push_back(std::move(node));
    }

    const RecordedPage& m_page;
    ReviewNode m_node;
};

// Two products may have one name.
ReviewNode ProductLine(const AnswerProduct& product, const std::vector<RecordedPage>& pages)
{
    const bool hasTwin = std::any_of(pages.begin(), pages.end(), [&](const RecordedPage& page) {
        return page.product.strName == product.strName && !(page.product.strCode == product.strCode);
    });
    return ReviewLine(product.strName + (hasTwin ? L" " + product.strCode : CString()));
}

} // namespace

ReviewDocument ReviewAnswers(const std::vector<RecordedPage>& pages)
{
    ReviewDocument lines;
    std::vector<AnswerProduct> products;
    for (const RecordedPage& page : pages) {
        if (page.product.strName.IsEmpty() && page.product.strCode.IsEmpty()) {
            lines.push_back(CPageReview(page).Make());
        } else if (std::find(products.begin(), products.end(), page.product) == products.end()) {
            products.push_back(page.product);
        }
    }
    for (const AnswerProduct& product : products) {
        ReviewNode node = ProductLine(product, pages);
        for (const RecordedPage& page : pages) {
            if (page.product == product) {
                node.children.push_back(CPageReview(page).Make());
            }
        }
        lines.push_back(std::move(node));
    }
    return lines;
}
