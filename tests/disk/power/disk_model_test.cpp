#include "tests/disk/power/disk_model.h"

#include <fcntl.h>
#include <gtest/gtest.h>

#include <stdexcept>

namespace {

using disk::Kind;

/// A disk whose root is "/r", with words for what is done on it. Descriptor 3 is a file, 4 a folder.
class DiskModel : public ::testing::Test {
protected:
    void open(const std::string& path, int descriptor, int flags)
    {
        disk.apply({ Kind::open, descriptor, flags, 0, {}, path, {} });
    }

    void write(std::int64_t offset, const std::string& data)
    {
        disk.apply({ Kind::write, 3, 0, offset, data, {}, {} });
    }

    void resize(std::int64_t size)
    {
        disk.apply({ Kind::truncate, 3, 0, size, {}, {}, {} });
    }

    void sync(int descriptor)
    {
        disk.apply({ Kind::sync, descriptor, 0, 0, {}, {}, {} });
    }

    /// "a=text, b=text": the files when nothing, or all, of what is pending has reached the disk.
    [[nodiscard]] std::string after(bool all) const
    {
        return words(disk.image(std::vector<Reached>(disk.pending().size(), Reached { all })));
    }

    [[nodiscard]] static std::string words(const DiskImage& image)
    {
        std::string text;
        for (const auto& [name, content] : image.files) {
            std::string bytes = content.bytes;
            bytes.resize(static_cast<std::size_t>(content.size), '.');
            text += (text.empty() ? "" : ", ") + name + '=' + bytes;
        }
        return text;
    }

    /// The file "a" with this content, wholly on the disk.
    void standing(const std::string& content)
    {
        open("/r/a", 3, O_RDWR | O_CREAT);
        open("/r", 4, O_RDONLY);
        write(0, content);
        sync(3);
        sync(4);
    }

    RecordedDisk disk { "/r" };
};

} // namespace

TEST_F(DiskModel, WriteIsPendingUntilItsFileIsSynchronised)
{
    standing("old");
    write(0, "new");
    EXPECT_EQ(after(false), "a=old");
    EXPECT_EQ(after(true), "a=new");
    sync(3);
    EXPECT_EQ(after(false), "a=new");
}

TEST_F(DiskModel, SynchronisingAFileDoesNotMakeItsNameLast)
{
    open("/r/a", 3, O_RDWR | O_CREAT);
    write(0, "text");
    sync(3);
    EXPECT_EQ(after(false), "");
    EXPECT_EQ(after(true), "a=text");
}

TEST_F(DiskModel, SynchronisingAFolderDoesNotMakeTheBytesLast)
{
    open("/r/a", 3, O_RDWR | O_CREAT);
    write(0, "text");
    open("/r", 4, O_RDONLY);
    sync(4);
    EXPECT_EQ(after(false), "a=");
}

TEST_F(DiskModel, RemovalIsUndoneUntilTheFolderIsSynchronised)
{
    standing("old");
    disk.apply({ Kind::unlink, -1, 0, 0, {}, "/r/a", {} });
    EXPECT_EQ(after(false), "a=old");
    EXPECT_EQ(after(true), "");
    sync(4);
    EXPECT_EQ(after(false), "");
}

TEST_F(DiskModel, TruncationIsUndoneUntilTheFileIsSynchronised)
{
    standing("long text");
    resize(4);
    EXPECT_EQ(after(false), "a=long text");
    EXPECT_EQ(after(true), "a=long");
}

TEST_F(DiskModel, OpeningThatEmptiesIsATruncation)
{
    standing("text");
    open("/r/a", 5, O_WRONLY | O_TRUNC);
    EXPECT_EQ(after(false), "a=text");
    EXPECT_EQ(after(true), "a=");
}

TEST_F(DiskModel, WriteInPartLeavesTheOtherBytes)
{
    standing("........");
    write(2, "abcd");
    EXPECT_EQ(words(disk.image({ Reached { true, 0, 2 } })), "a=..ab....");
    EXPECT_EQ(words(disk.image({ Reached { true, 2, std::string::npos } })), "a=....cd..");
}

TEST_F(DiskModel, LaterWriteCanReachTheDiskBeforeAnEarlierOne)
{
    standing("");
    write(0, "ab");
    write(2, "cd");
    EXPECT_EQ(words(disk.image({ Reached { false }, Reached { true } })), std::string("a=") + '\0' + '\0' + "cd");
}

TEST_F(DiskModel, FolderThatDoesNotLastTakesItsFilesAlong)
{
    disk.apply({ Kind::makeFolder, -1, 0, 0, {}, "/r/shop", {} });
    open("/r/shop/a", 3, O_RDWR | O_CREAT);
    open("/r/shop", 4, O_RDONLY);
    write(0, "text");
    sync(3);
    sync(4);
    EXPECT_EQ(after(false), "");
    EXPECT_EQ(after(true), "shop/a=text");
}

TEST_F(DiskModel, RenamingHappensWhollyOrNotAtAll)
{
    standing("text");
    disk.apply({ Kind::rename, -1, 0, 0, {}, "/r/a", "/r/b" });
    EXPECT_EQ(after(false), "a=text");
    EXPECT_EQ(after(true), "b=text");
}

TEST_F(DiskModel, DiskThatBeginsWithAnImageHasAllOfItLasting)
{
    disk = RecordedDisk("/r", { { "shop" }, { { "shop/a", { "old", 3 } } } });
    EXPECT_EQ(after(false), "shop/a=old");
    open("/r/shop/a", 3, O_RDWR);
    write(0, "new");
    EXPECT_EQ(after(false), "shop/a=old");
    EXPECT_EQ(after(true), "shop/a=new");
}

TEST_F(DiskModel, RecordWithAGapIsRefused)
{
    EXPECT_THROW(write(0, "text"), std::runtime_error);
    EXPECT_THROW(open("/r/missing", 3, O_RDWR), std::runtime_error);
}
