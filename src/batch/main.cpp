// tavrelle-batch: the analysis of the desktop program for scripts, pipelines and job arrays.
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <iostream>
#include <stdexcept>

#include "analysis/StatisticalTables.h"
#include "base/InstallPaths.h"
#include "base/PartialFiles.h"
#include "base/Version.h"
#include "batch/BatchOptions.h"
#include "batch/BatchRun.h"
#include "run/LocusMotifs.h"

namespace {

std::filesystem::path ProgramFolder(const char* argv0) {
    std::error_code error;
    std::filesystem::path self = std::filesystem::read_symlink("/proc/self/exe", error);
    if (error) self = std::filesystem::absolute(argv0);
    return self.parent_path();
}

int Fail(int status, const std::string& message) {
    std::cerr << "tavrelle-batch: " << message << "\n";
    return status;
}

// Standard output is checked through its close: a full disk or a closed pipe is a failure.
int Finish(int status) {
    errno = 0;
    if (std::fflush(stdout) != 0 || std::ferror(stdout) || std::fclose(stdout) != 0)
        return Fail(1, std::string("could not write standard output: ") +
                           std::strerror(errno != 0 ? errno : EIO));
    return status;
}

int Run(const tavrelle::BatchOptions& options, const char* argv0) {
    using namespace tavrelle;
    if (options.help) {
        std::fputs(BatchUsage().c_str(), stdout);
        return 0;
    }
    if (options.version) {
        std::printf("tavrelle-batch %s\n", kProgramVersion);
        return 0;
    }
    if (options.convert) {
        std::fputs(ConvertDataFile(options).c_str(), stdout);
        return 0;
    }
    // The tables beside the program, or where an installed program keeps them.
    const std::filesystem::path tables =
        InstalledFile(ProgramFolder(argv0), kChiSquareTableFile).parent_path();
    return ExitStatusOf(RunBatch(options, tables, std::cerr));
}

}  // namespace

int main(int argc, char** argv) {
    using namespace tavrelle;
    // Ctrl-C or a job's time limit leaves no half-written report or file behind.
    PartialFiles::RemoveOnSignal();
    try {
        BatchOptions options = ParseBatchOptions(std::vector<std::string>(argv + 1, argv + argc));
        options.commandLine = CommandLineText(std::vector<std::string>(argv, argv + argc));
        return Finish(Run(options, argv[0]));
    } catch (const std::invalid_argument& refusal) {
        return Fail(2, refusal.what());
    } catch (const std::exception& failure) {
        return Fail(1, failure.what());
    }
}
