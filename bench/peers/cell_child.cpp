#include "bench/peers/cell.h"

#include <cstdio>
#include <string>
#include <sys/wait.h>
#include <unistd.h>

namespace bench {

namespace {

constexpr unsigned int longest_seconds = 600;

[[noreturn]] void become_child(const PeerKind& kind, Operation operation, const std::string& corpus,
                               std::size_t repetitions, int output) {
    dup2(output, STDOUT_FILENO);
    alarm(longest_seconds);
    execl("/proc/self/exe", "bk_parser_peers", "--cell", kind.name, operation_name(operation), corpus.c_str(),
          std::to_string(repetitions).c_str(), static_cast<char*>(nullptr));
    _exit(127);
}

std::string read_all(int input) {
    std::string text;
    char block[4096];
    for (ssize_t size = 0; (size = read(input, block, sizeof(block))) > 0;) {
        text.append(block, static_cast<std::size_t>(size));
    }
    return text;
}

/// Reads one line of the output of answer_cell.
void take_line(const char* line, CellResult& result) {
    double number = 0.0;
    unsigned long long amount = 0;
    unsigned long long leaves = 0;
    unsigned long long exact = 0;
    unsigned long long bits = 0;
    if (std::sscanf(line, "sample %la", &number) == 1) {
        result.samples.push_back(number);
    } else if (std::sscanf(line, "amount %llu", &amount) == 1) {
        result.amount = amount;
    } else if (std::sscanf(line, "sum %llu %llu %llu %la", &leaves, &exact, &bits, &number) == 4) {
        result.sum = {leaves, exact, bits, number};
        result.was_walked = true;
    }
}

} // namespace

std::optional<CellResult> run_cell_apart(const PeerKind& kind, Operation operation, const std::string& corpus,
                                         std::size_t repetitions) {
    int ends[2];
    if (pipe(ends) != 0) {
        return std::nullopt;
    }
    const pid_t child = fork();
    if (child == 0) {
        close(ends[0]);
        become_child(kind, operation, corpus, repetitions, ends[1]);
    }
    close(ends[1]);
    const std::string answer = read_all(ends[0]);
    close(ends[0]);
    int status = 1;
    if (child < 0 || waitpid(child, &status, 0) != child || status != 0) {
        return std::nullopt;
    }
    CellResult result;
    for (std::size_t start = 0; start < answer.size();) {
        const std::size_t end = answer.find('\n', start);
        take_line(answer.substr(start, end - start).c_str(), result);
        start = end + 1;
    }
    return result;
}

int answer_cell(const std::string& peer, const std::string& operation, const std::string& corpus,
                std::size_t repetitions) {
    const PeerKind* const kind = find_peer(peer);
    if (kind == nullptr) {
        return 2;
    }
    for (unsigned int i = 0; i < operation_count; ++i) {
        if (operation != operation_name(static_cast<Operation>(i))) {
            continue;
        }
        const std::optional<CellResult> result =
            run_cell(*kind, static_cast<Operation>(i), corpus, repetitions);
        if (!result) {
            return 1;
        }
        for (const double sample : result->samples) {
            std::printf("sample %a\n", sample);
        }
        std::printf("amount %zu\n", result->amount);
        if (result->was_walked) {
            std::printf("sum %llu %llu %llu %a\n", static_cast<unsigned long long>(result->sum.leaves),
                        static_cast<unsigned long long>(result->sum.exact),
                        static_cast<unsigned long long>(result->sum.bits), result->sum.sum);
        }
        return 0;
    }
    return 2;
}

} // namespace bench
