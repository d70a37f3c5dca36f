// A book as files.
#pragma once

#include <filesystem>

#include "examples/book/Book.h"

// Each throws CannotWrite.
struct CannotWrite {
    std::string line;  // file and reason
};

// With links, an outline of the headings, and the title.
void writePDF(const Book& book, const Typesetter& typesetter, const std::filesystem::path& path, const Progress& progress);

// page-01.png and so on, in that folder, at 144 dots an inch. Throws std::filesystem::filesystem_error as well.
void writePictures(const Book& book, const Typesetter& typesetter, const std::filesystem::path& folder, const Progress& progress);

// A page of a book, and elements whose paragraphs are marked there.
struct PageToShow {
    const Book& book;
    size_t page;
    std::vector<Ref<WQXMLNode>> marked;
};
// Two pages side by side on grey.
void writeTwoPages(const PageToShow& left, const PageToShow& right, const Typesetter& typesetter, const std::filesystem::path& path);

void writeBytes(std::string_view bytes, const std::filesystem::path& path);

// What is written becomes visible as a whole, or not at all: files are made in a folder of their own, which goes away
// with this object, and take the places of older ones at the end.
class OutputFolder {
public:
    explicit OutputFolder(const std::filesystem::path& aFolder);
    ~OutputFolder();
    OutputFolder(const OutputFolder&) = delete;
    OutputFolder& operator=(const OutputFolder&) = delete;

    std::filesystem::path operator/(const std::string& name) const { return unfinished / name; }
    // Of a folder inside, what is there stays but for pictures of pages. Older files of the names given go, if they were not
    // made again.
    void publish(const std::vector<std::string>& names);
    // A line that names a file in the folder of its own, as if it were where it goes to.
    std::string asPublished(std::string line) const;

private:
    const std::filesystem::path folder;
    std::filesystem::path unfinished;
};
