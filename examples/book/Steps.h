// The steps of a long piece of work: how far each is, and how long it took.
#pragma once

#include <chrono>
#include <functional>
#include <string>
#include <vector>

// A step of work that takes long, told as it goes on: so many of so many.
using Progress = std::function<void(size_t done, size_t all)>;

// On a terminal, a step that takes more than a second says on standard error how far it is; elsewhere nothing does.
class Steps {
public:
    using Clock = std::chrono::steady_clock;
    struct Step {
        std::string name;
        double seconds;
    };

    // The work may tell its progress to what it is given.
    void run(const std::string& name, const std::function<void(const Progress&)>& work);
    const std::vector<Step>& taken() const { return steps; }

private:
    std::vector<Step> steps;
};
