// The page's loading against the written steps, on databases of all kinds of disorder: duplicates, strays, broken chains,
// foreign keys, apostrophes, names that are too long.
#include "tests/files/files_page.h"
#include "tests/files/written_steps.h"
#include "tests/rules/user_key.h"

#include <algorithm>
#include <numeric>
#include <random>

namespace {

constexpr int PRODUCT_DIRECTORIES = 9;
constexpr int USER_DIRECTORIES = 9;

class FilesLoading : public FilesPage
{
protected:
    // The same number gives the same database.
    void WithDisorder(unsigned int seed)
    {
        m_random.seed(seed);
        product.msiProperties.clear();
        servicePaths.clear();
        WithFreshDatabase(L"disorder" + NumberText(static_cast<int>(seed)) + L".msi");
        if (!OneOf(12)) {
            WithDirectory(L"INSTALLDIR", L"TARGETDIR", L"Zolt", L"C:\\Zolt\\", L"D:\\media\\Zolt\\");
        }
        WithDirectory(L"TARGETDIR", L"", L"SourceDir", L"C:\\", L"D:\\media\\");
        if (OneOf(2)) {
            WithMapRow(L"INSTALLDIR", Pick({L"<Zolt>", L"", L"C:", L"Zolt\\2027", L"<zolt>"}), 0);
        }
        servicePaths = {{L"SYSTEM", L"C:\\windows\\"}, {L"D1", L"C:\\Zolt\\x\\"}};
        AddProductDirectories();
        AddUserDirectories();
        AddDrives();
        AddAddedFiles();
    }
    // With two lines in front of it and two behind.
    static CString LinesFrom(const Lines& lines, Lines::const_iterator place)
    {
        CString text;
        const auto index = place - lines.begin();
        for (auto number = std::max<std::ptrdiff_t>(index - 2, 0);
             number < index + 3 && number < std::ssize(lines); ++number) {
            text += lines[static_cast<std::size_t>(number)] + L"\n";
        }
        return text;
    }
    // Long lists are compared by their first difference.
    static CString FirstDifference(const Lines& shown, const Lines& expected)
    {
        const auto [one, other] = std::mismatch(shown.begin(), shown.end(), expected.begin(), expected.end());
        if (one == shown.end() && other == expected.end()) {
            return CString();
        }
        return L"shown:\n" + LinesFrom(shown, one) + L"expected:\n" + LinesFrom(expected, other);
    }
    Lines ByWrittenSteps()
    {
        return LoadByWrittenSteps(
            {Database(), product.m_pDirectoryManager, &product.msiProperties, &servicePaths});
    }
    Lines Shown() const
    {
        Lines lines;
        WalkTree([this, &lines](HTREEITEM node, int depth) {
            const auto* const data = reinterpret_cast<const FileTreeNode*>(Item(node).lParam);
            EXPECT_EQ(data->Item, node);
            EXPECT_EQ(data->View, Tree().GetWindow());
            lines.push_back(DescribeTreeNode(depth, Tree().GetItemText(node), data->Key, data->IsUserItem,
                                             data->SourcePath));
        });
        return lines;
    }

private:
    int Number(int count) { return static_cast<int>(m_random() % static_cast<unsigned int>(count)); }
    bool OneOf(int count) { return Number(count) == 0; }
    CString Pick(const std::vector<const wchar_t*>& texts)
    {
        return texts[static_cast<std::size_t>(Number(static_cast<int>(texts.size())))];
    }
    CString Name()
    {
        return OneOf(9) ? CString(L'n', 120)
                        : Pick({L"a", L"B", L"c d", L"A", L"it's", L"\x00E4", L"\x4E2D", L"x.y", L"e"});
    }
    static CString ProductKey(int number) { return L"D" + NumberText(number); }
    CString AnyDirectory()
    {
        switch (Number(4)) {
        case 0:
            return Pick({L"INSTALLDIR", L"TARGETDIR", L"GONE", L"SYSTEM", L"targetdir"});
        case 1:
            return ProductKey(Number(PRODUCT_DIRECTORIES));
        default:
            return UserKey(Number(USER_DIRECTORIES));
        }
    }

    // By a record, so that texts may hold apostrophes.
    void Insert(const CString& table, const CString& columns, const std::vector<CString>& texts)
    {
        const CInstallerHandle record(MsiCreateRecord(static_cast<UINT>(texts.size())));
        CString marks;
        for (std::size_t index = 0; index < texts.size(); ++index) {
            marks += index == 0 ? L"?" : L",?";
            MsiRecordSetStringW(record.get(), static_cast<UINT>(index) + 1, texts[index]);
        }
        CInstallerHandle view;
        const CString statement = L"INSERT INTO `" + table + L"` (" + columns + L") VALUES (" + marks + L")";
        ASSERT_EQ(MsiDatabaseOpenViewW(Database(), statement, view.put()), 0u) << Utf8(statement);
        MsiViewExecute(view.get(), record.get()); // a key that is there already stays as it is
    }
    void InsertDirectory(const CString& key, const CString& parent, const CString& name)
    {
        Insert(L"Directory", L"`Directory`,`Directory_Parent`,`DefaultDir`", {key, parent, name});
    }
    void InsertComponent(const CString& key, const CString& directory)
    {
        Insert(L"Component", L"`Component`,`Directory_`,`Attributes`", {key, directory, L"0"});
    }
    void InsertAddition(const CString& key, const CString& source, const CString& flags)
    {
        Insert(L"TarnCustomFile", L"`Component_`,`SourceFileName`,`Flags`", {key, source, flags});
    }

    void AddProductDirectories()
    {
        std::vector<CString> targets = {L"C:\\Zolt\\"};
        for (int number = 0; number < PRODUCT_DIRECTORIES; ++number) {
            const bool isBelowOther = number > 0 && !OneOf(3);
            const int above = isBelowOther ? Number(number) : 0;
            const CString parent = OneOf(8)       ? CString(L"GONE")
                                   : isBelowOther ? ProductKey(above)
                                                  : CString(L"INSTALLDIR");
            const CString name = Name();
            CString target = targets[isBelowOther ? static_cast<std::size_t>(above) + 1 : 0] + name + L"\\";
            if (OneOf(5)) {
                target = targets[static_cast<std::size_t>(Number(number + 1))]; // of another
            } else if (OneOf(8)) {
                target = L"C:\\Elsewhere\\" + name + L"\\";
            } else if (OneOf(8)) {
                target.MakeUpper();
            }
            targets.push_back(target);
            const CString key = OneOf(10) ? UserKey(number) : ProductKey(number);
            const CString source = OneOf(10) ? CString() : Pick({L"D:\\media\\zolt\\x\\", L"E:\\pack\\"});
            InsertDirectory(key, parent, name);
            directories.Set(key, parent, name, OneOf(15) ? CString() : target, source);
            if (OneOf(15)) {
                directories.SetWithoutRow(key, target, source);
            }
            if (!OneOf(3)) {
                InsertComponent(L"C" + key.Right(20), key);
            }
            if (OneOf(8)) {
                WithMapRow(key, L"", Pick({L"4", L"6", L"2"}) == L"2" ? 2 : 4);
            }
        }
    }
    // Parents in any order of the keys, but never in a circle: the written steps have no end there.
    void AddUserDirectories()
    {
        std::vector<int> order(USER_DIRECTORIES);
        std::iota(order.begin(), order.end(), 0);
        std::shuffle(order.begin(), order.end(), m_random);
        for (std::size_t place = 0; place < order.size(); ++place) {
            const CString key = UserKey(order[place]);
            CString parent = AnyDirectory();
            if (parent.Left(5) == L"TARN_") {
                parent = place == 0
                             ? CString(L"INSTALLDIR")
                             : UserKey(order[static_cast<std::size_t>(Number(static_cast<int>(place)))]);
            }
            const CString name = OneOf(8) ? Pick({L"..", L".", L"s|long", L"\\up"}) : Name();
            if (!OneOf(12)) {
                InsertDirectory(key, parent, name);
            }
            if (!OneOf(12)) {
                InsertComponent(key, OneOf(12) ? AnyDirectory() : key);
            }
            if (!OneOf(12)) {
                InsertAddition(key, name, L"2");
            }
            if (OneOf(3)) {
                product.msiProperties[key + L"_SUBST"] = Pick({L"E:", L"F:\\", L"", L"g:"});
            }
        }
    }
    void AddDrives()
    {
        for (int number = 20; number < 25; ++number) {
            const CString key = OneOf(6) ? L"FOREIGN" + NumberText(number) : UserKey(number);
            InsertDirectory(
                key, OneOf(8) ? CString(L"targetdir") : CString(L"TARGETDIR"),
                Pick({L"DRIVE_E", L"DRIVE_F", L"DRIVE_e", L"DRIVE_1", L"XDRIVE_G", L"E", L"DRIVE_GH"}));
            if (!OneOf(6)) {
                Insert(L"CustomAction", L"`Action`,`Type`", {key, L"51"});
            }
            if (OneOf(2)) {
                InsertAddition(UserKey(number + 10), L"On drive", L"2");
                InsertDirectory(UserKey(number + 10), key, L"On drive");
                InsertComponent(UserKey(number + 10), UserKey(number + 10));
            }
        }
    }
    void AddAddedFiles()
    {
        for (int number = 40; number < 60; ++number) {
            CString key = UserKey(number);
            if (OneOf(10)) {
                key = L"it's" + NumberText(number);
            } else if (OneOf(10)) {
                key = L"foreign" + NumberText(number);
            }
            if (!OneOf(10)) {
                InsertComponent(key, AnyDirectory());
            }
            const CString source =
                OneOf(12) ? CString() : L"C:\\from\\" + Name() + Pick({L".txt", L"", L"."});
            InsertAddition(key, source, OneOf(10) ? CString(L"1") : CString(L"0"));
        }
    }

    std::mt19937 m_random;
};
INSTANTIATE_BOTH_SHAPES(FilesLoading);

} // namespace

TEST_P(FilesLoading, ShowsWhatTheWrittenStepsShowOnFortyDatabasesOfDisorder)
{
    std::size_t nodes = 0;
    for (unsigned int seed = 1; seed <= 40; ++seed) {
        WithDisorder(seed);
        const Lines expected = ByWrittenSteps();
        Look([this, seed, expected, &nodes] {
            EXPECT_EQ(FirstDifference(Shown(), expected), CString()) << "seed " << seed;
            nodes += expected.size();
        });
        ShowAndGoBack();
        if (HasFailure()) {
            return;
        }
    }
    EXPECT_GT(nodes, 40u * 10) << "the databases hold too little to prove anything";
}

TEST_P(FilesLoading, ShowsWhatTheWrittenStepsShowWithoutADirectoryManager)
{
    product.m_pDirectoryManager = nullptr;
    for (unsigned int seed = 100; seed <= 110; ++seed) {
        WithDisorder(seed);
        const Lines expected = ByWrittenSteps();
        Look([this, seed, expected] {
            EXPECT_EQ(FirstDifference(Shown(), expected), CString()) << "seed " << seed;
        });
        ShowAndGoBack();
        if (HasFailure()) {
            return;
        }
    }
}
