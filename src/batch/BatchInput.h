#pragma once

#include <optional>
#include <string>
#include <vector>

#include "batch/BatchOptions.h"
#include "population/DataFormat.h"
#include "population/FileKind.h"
#include "population/ReadProblems.h"

namespace tavrelle {

// The input file as the batch program reads it: its format told from its bytes (or --format),
// and either the data a reader made of it or the way to the store's own load, which keeps the
// three-digit Genepop files and Tavrelle's workbooks reading exactly as the desktop reads them
// (but for the Genepop files it would refuse for blank lines or tabs, which the reader reads).
// A file a reader refuses throws std::runtime_error with its located problems.
class BatchInput {
public:
    // `keepStoreData`: keep the data of a file the store loads too (convert writes them); an
    // analysis drops them at once, so that a large file is not held twice.
    BatchInput(const BatchOptions& options, bool keepStoreData);
    ~BatchInput();
    BatchInput(const BatchInput&) = delete;
    BatchInput& operator=(const BatchInput&) = delete;

    DataFormat format = DataFormat::Unknown;
    // The store's load reads `loadPath` (standard input is copied to a temporary file) as `kind`.
    bool storeLoad = false;
    std::string loadPath;
    FileKind kind = FileKind::Genepop;
    // The data, from every reader but the store's (a three-digit Genepop file has both when
    // asked to keep them).
    std::optional<GenotypeRead> read;
    // What the reader read as it stands but the user should know, one located line each.
    std::vector<std::string> notes;
    // SHA-256 of the bytes read, for the reports' header; empty when they could not be read.
    std::string sha256;

private:
    std::string temporary_;
};

}  // namespace tavrelle
