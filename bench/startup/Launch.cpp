// Starts programs one after the other, in another order each round, and times each from posix_spawn
// to wait (POSIX).
//     launch ROUNDS BODY PROGRAM...
// BODY is the file on their standard input; what they write to a pipe is read and dropped. For each
// program it prints a line: the median of its times in microseconds, the page faults and the
// largest memory in KiB of the last round, and for each program, itself too, the median of the
// ratios of their times in the same round.
#include <fcntl.h>
#include <spawn.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <functional>
#include <numeric>
#include <random>
#include <vector>

namespace {

struct Start {
    double microseconds;
    rusage usage;
};

void readAll(int descriptor) {
    static char buffer[1 << 16];
    while (read(descriptor, buffer, sizeof buffer) > 0) {
    }
}

Start start(char* program, const char* body) {
    int pipeEnds[2];
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    pid_t child = 0;
    char* arguments[] = {program, nullptr};
    if (pipe2(pipeEnds, O_CLOEXEC) != 0) {
        std::abort();
    }
    posix_spawn_file_actions_addopen(&actions, STDIN_FILENO, body, O_RDONLY, 0);
    posix_spawn_file_actions_adddup2(&actions, pipeEnds[1], STDOUT_FILENO);
    posix_spawn_file_actions_addopen(&actions, STDERR_FILENO, "/dev/null", O_WRONLY, 0);

    Start result{};
    int status = 0;
    const auto before = std::chrono::steady_clock::now();
    const int error = posix_spawn(&child, program, &actions, nullptr, arguments, environ);
    close(pipeEnds[1]);
    readAll(pipeEnds[0]);
    const bool waited = wait4(child, &status, 0, &result.usage) == child;
    const std::chrono::duration<double, std::micro> time =
        std::chrono::steady_clock::now() - before;
    close(pipeEnds[0]);
    posix_spawn_file_actions_destroy(&actions);
    if (error != 0 || !waited || !WIFEXITED(status)) {
        std::fprintf(stderr, "%s: it didn't start, or didn't end by itself\n", program);
        std::exit(EXIT_FAILURE);
    }
    result.microseconds = time.count();
    return result;
}

double median(std::vector<double> values) {
    const auto middle = values.begin() + static_cast<std::ptrdiff_t>(values.size() / 2);
    std::nth_element(values.begin(), middle, values.end());
    return *middle;
}

struct Program {
    char* path;
    std::vector<double> times;  // one for each round
    rusage usage;               // that of the last round
};

void measure(std::vector<Program>& programs, const char* body, std::size_t rounds) {
    std::vector<std::size_t> order(programs.size());
    std::iota(order.begin(), order.end(), std::size_t{0});
    std::mt19937 random(1);
    for (std::size_t round = 0; round < rounds; ++round) {
        std::shuffle(order.begin(), order.end(), random);
        for (const std::size_t number : order) {
            const Start result = start(programs[number].path, body);
            programs[number].times.push_back(result.microseconds);
            programs[number].usage = result.usage;
        }
    }
}

double medianRatio(const Program& program, const Program& other) {
    std::vector<double> ratios(program.times.size());
    std::transform(program.times.begin(), program.times.end(), other.times.begin(), ratios.begin(),
                   std::divides<>());
    return median(ratios);
}

void printFigures(const std::vector<Program>& programs) {
    for (const Program& program : programs) {
        std::printf("%.1f %ld %ld", median(program.times), program.usage.ru_minflt,
                    program.usage.ru_maxrss);
        for (const Program& other : programs) {
            std::printf(" %.3f", medianRatio(program, other));
        }
        std::printf("\n");
    }
}

}  // namespace

int main(int count, char** arguments) {
    constexpr int kFirstProgram = 3;
    const std::size_t rounds = count > 1 ? std::strtoul(arguments[1], nullptr, 10) : 0;
    if (count <= kFirstProgram || rounds == 0) {
        std::fputs("Usage: launch ROUNDS BODY PROGRAM...\n", stderr);
        return EXIT_FAILURE;
    }
    std::vector<Program> programs;
    for (int i = kFirstProgram; i < count; ++i) {
        programs.push_back({arguments[i], {}, {}});
    }
    measure(programs, arguments[2], rounds);
    printFigures(programs);
    return EXIT_SUCCESS;
}
