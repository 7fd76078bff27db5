// Not run by default: 500 MB built and copied plainly, in turns.
#include "tests/host/build_fixture.h"

#include "builder/plain_copy.h"

#include <windows.h>

namespace {

TEST(BuildSpeed, DISABLED_AgainstAPlainCopy)
{
    ProductOptions options;
    options.bytesOfLargeFile = 50 << 20;
    TestBuild build(options);
    const std::string bytes = ReadBytes(build.Media() + L"\\x64\\Zolt\\Data\\Deep\\large.bin");
    for (int number = 0; number < 9; ++number) {
        WriteBytes(build.Media() + L"\\x64\\Zolt\\more" + NumberText(number) + L".bin", bytes);
    }
    for (int round = 0; round < 5; ++round) {
        LARGE_INTEGER frequency, first, second, third, fourth;
        QueryPerformanceFrequency(&frequency);
        QueryPerformanceCounter(&first);
        const std::uint64_t copied = CopyPlainly(build.plan, build.Folder() / L"plain", PlainCopy::Bytes);
        QueryPerformanceCounter(&second);
        const BuildResult result = build.Build();
        QueryPerformanceCounter(&third);
        EXPECT_EQ(CopyPlainly(build.plan, build.Folder() / L"hashed", PlainCopy::BytesAndHashes), copied);
        QueryPerformanceCounter(&fourth);
        EXPECT_GT(copied, std::uint64_t{500 << 20});
        EXPECT_EQ(result.error.code, 0u) << Utf8(result.error.message);
        printf("plain %.0f ms, build %.0f ms, with hashes %.0f ms\n",
               double(second.QuadPart - first.QuadPart) * 1000 / double(frequency.QuadPart),
               double(third.QuadPart - second.QuadPart) * 1000 / double(frequency.QuadPart),
               double(fourth.QuadPart - third.QuadPart) * 1000 / double(frequency.QuadPart));
        RemoveTree(build.Folder() / L"plain");
        RemoveTree(build.Folder() / L"hashed");
        RemoveTree(build.Target());
    }
}

} // namespace
