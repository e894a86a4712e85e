// Stands in for a command of the system, under whatever name it is put. A file of the folder
// $STANDIN_FOLDER (of the working directory, without that) says what the command does:
// "<first argument>.answer", or "default.answer" without arguments. The first line of the file
// names the manner, perhaps with a number, the rest is what is printed. Without a file the command
// prints that nobody answered and fails. Each call adds its process id and arguments to
// "calls.log".

#include <unistd.h>

#include <chrono>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <iterator>
#include <sstream>
#include <string>
#include <thread>

namespace {

constexpr std::chrono::seconds lingering(60); // a forgotten stand-in must not run for ever
constexpr int forgottenStatus = 3;
constexpr std::size_t mebibyte = 1'048'576;

std::string besideAnswers(const std::string &name)
{
    const char *folder = std::getenv("STANDIN_FOLDER");
    return folder == nullptr ? name : folder + ('/' + name);
}

void noteCall(int argc, char **argv)
{
    std::ostringstream line;
    line << getpid();
    for (int i = 1; i < argc; ++i) {
        line << ' ' << argv[i];
    }
    std::ofstream(besideAnswers("calls.log"), std::ios::app) << line.str() << std::endl;
}

void print(const std::string &text)
{
    if (std::fwrite(text.data(), 1, text.size(), stdout) != text.size()) {
        std::exit(EXIT_FAILURE);
    }
    std::fflush(stdout);
}

[[noreturn]] void linger()
{
    std::this_thread::sleep_for(lingering);
    std::exit(forgottenStatus);
}

void flood(long mebibytes)
{
    std::string filler(mebibyte, 'x');
    filler.back() = '\n';
    const auto end = std::chrono::steady_clock::now() + lingering;
    for (long i = 0; i < mebibytes && std::chrono::steady_clock::now() < end; ++i) {
        print(filler);
    }
}

int act(const std::string &manner, long number, const std::string &text)
{
    if (manner == "late") {
        std::this_thread::sleep_for(std::chrono::milliseconds(number));
    } else if (manner == "flood") {
        flood(number);
    } else if (manner == "stubborn") {
        std::signal(SIGTERM, SIG_IGN);
        std::signal(SIGINT, SIG_IGN);
    } else if (manner == "reader") {
        while (std::getchar() != EOF) { }
    } else if (manner == "mute") {
        std::fclose(stdout);
        linger();
    }
    print(text);
    if (manner == "linger" || manner == "stubborn") {
        linger();
    }
    return manner == "fail" ? EXIT_FAILURE : EXIT_SUCCESS;
}

} // namespace

int main(int argc, char **argv)
{
    noteCall(argc, argv);
    const std::string key = argc > 1 ? argv[1] : "default";
    std::ifstream file(besideAnswers(key + ".answer"), std::ios::binary);
    if (!file) {
        print("Request timed out.\n");
        return EXIT_FAILURE;
    }
    std::string firstLine;
    std::getline(file, firstLine);
    std::istringstream head(firstLine);
    std::string manner;
    long number = 0;
    head >> manner >> number;
    return act(manner, number,
               std::string(std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()));
}
