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
#include <cstddef>
#include <cstdio>
#include <cstdlib>
#include <functional>
#include <numeric>
#include <random>
#include <vector>

#include "services/base/File.h"

namespace {

[[noreturn]] void fail(const char* what, const char* why) {
    std::fprintf(stderr, "%s: %s\n", what, why);
    std::exit(EXIT_FAILURE);
}

// The pipe that a program writes its page to.
class Pipe {
public:
    Pipe() {
        int ends[2];
        if (pipe2(ends, O_CLOEXEC) != 0) {
            fail("launch", "there is no pipe");
        }
        reader_ = FileDescriptor(ends[0]);
        writer_ = FileDescriptor(ends[1]);
    }

    [[nodiscard]] int writer() const { return writer_.number(); }
    void closeWriter() { close(writer_.release()); }
    // Reads to the end, which comes when nobody can write any more, and drops what it reads.
    void drain() const {
        static char buffer[1 << 16];
        while (read(reader_.number(), buffer, sizeof buffer) > 0) {
        }
    }

private:
    FileDescriptor reader_;
    FileDescriptor writer_;
};

// The standard streams of a program.
class Streams {
public:
    Streams(const char* input, int output) {
        posix_spawn_file_actions_init(&actions_);
        posix_spawn_file_actions_addopen(&actions_, STDIN_FILENO, input, O_RDONLY, 0);
        posix_spawn_file_actions_adddup2(&actions_, output, STDOUT_FILENO);
        posix_spawn_file_actions_addopen(&actions_, STDERR_FILENO, "/dev/null", O_WRONLY, 0);
    }
    ~Streams() { posix_spawn_file_actions_destroy(&actions_); }
    Streams(const Streams&) = delete;
    Streams& operator=(const Streams&) = delete;

    [[nodiscard]] const posix_spawn_file_actions_t* actions() const { return &actions_; }

private:
    posix_spawn_file_actions_t actions_;
};

struct Start {
    double microseconds;
    rusage usage;
};

Start start(char* program, const char* body) {
    Pipe page;
    const Streams streams(body, page.writer());
    char* arguments[] = {program, nullptr};
    Start result{};
    pid_t child = 0;
    int status = 0;
    const auto before = std::chrono::steady_clock::now();
    if (posix_spawn(&child, program, streams.actions(), nullptr, arguments, environ) != 0) {
        fail(program, "it or its input can't be opened");
    }
    page.closeWriter();
    page.drain();
    if (wait4(child, &status, 0, &result.usage) != child || !WIFEXITED(status)) {
        fail(program, "it didn't end by itself");
    }
    const std::chrono::duration<double, std::micro> time =
        std::chrono::steady_clock::now() - before;
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
