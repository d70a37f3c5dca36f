#include "platform/Slab.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <vector>

namespace {

struct Cell {
    unsigned char* memory;
    size_t size;
    unsigned char mark;
};

Cell marked(size_t size, unsigned char mark) {
    auto* memory = static_cast<unsigned char*>(wq::allocateSmall(size));
    std::memset(memory, mark, size);
    return {memory, size, mark};
}

bool isWhole(const Cell& cell) {
    return std::all_of(cell.memory, cell.memory + cell.size, [&](unsigned char byte) { return byte == cell.mark; });
}

}  // namespace

TEST(Slab, GivesStorageOfAnySizeAlignedTo16) {
    for (size_t size = 0; size <= 600; ++size) {
        void* memory = wq::allocateSmall(size);
        ASSERT_TRUE(memory) << size;
        EXPECT_EQ(reinterpret_cast<uintptr_t>(memory) % 16, 0u) << size;
        std::memset(memory, 0xAB, size);
        wq::freeSmall(memory, size);
    }
}

TEST(Slab, WhatLivesAtOneTimeDoesNotOverlap) {
    std::vector<Cell> cells;
    const size_t sizes[] = {1, 16, 17, 40, 64, 200, 256, 257, 1000};
    for (int round = 0; round < 40; ++round)
        for (const size_t size : sizes) cells.push_back(marked(size, static_cast<unsigned char>(round + 1)));
    for (const Cell& cell : cells) EXPECT_TRUE(isWhole(cell));
    for (const Cell& cell : cells) wq::freeSmall(cell.memory, cell.size);
}

TEST(Slab, MoreThanABlockAndAgainFromWhatWasFreed) {
    std::vector<Cell> kept, cells;
    for (int round = 0; round < 3; ++round) {
        for (int i = 0; i < 5000; ++i) cells.push_back(marked(32, static_cast<unsigned char>(i % 251)));
        for (size_t i = 0; i < cells.size(); ++i)
            if (i % 7 == 0)
                kept.push_back(cells[i]);
            else
                wq::freeSmall(cells[i].memory, cells[i].size);
        cells.clear();
        for (const Cell& cell : kept) ASSERT_TRUE(isWhole(cell));
    }
    for (const Cell& cell : kept) wq::freeSmall(cell.memory, cell.size);
}
