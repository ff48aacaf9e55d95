#include "run/StudyDriver.h"

#include "checking/AlleleCoding.h"
#include "population/InputDataSource.h"
#include "run/LocusMotifs.h"
#include "run/StudyRun.h"

namespace tavrelle {

namespace {

std::vector<StudyPopulation> ChosenPopulations(InputDataSource& store, const StudyJob& job) {
    if (job.populations.empty()) return StudyPopulations(store);
    int count = 0;
    std::vector<StudyPopulation> chosen = StudyPopulations(store, job.populations, count);
    for (int number : job.populations)
        if (number > count)
            throw StudyUsageError("--population: " + job.file + " has " + std::to_string(count) +
                                  " population(s): there is no population " +
                                  std::to_string(number) + ".");
    return chosen;
}

}  // namespace

StudyCounts RunStudyJob(InputDataSource& store, const StudyJob& job, StudySink& sink,
                        std::ostream& notes) {
    StudyHeader header;
    header.file = job.file;
    header.fileSha256 = job.fileSha256;
    header.command = job.command;
    header.title = store.TitleLine();
    header.settings = job.settings;
    header.settings.repeatByLocus = MotifsOfLoci(store.LocusNames(), job.repeatByName,
                                                 job.repeatTable, job.settings.repeatForAll, notes);
    std::vector<StudyPopulation> chosen = ChosenPopulations(store, job);
    std::vector<const Table*> tables;
    for (const StudyPopulation& population : chosen)
        tables.push_back(&population.table);
    if (AllelesLookLikeIndices(tables))
        notes << "tavrelle-batch: " << job.file << ": " << kIndexLikeAllelesText << "\n";
    // Each population now has its own table; the store's copy of the whole file is not needed.
    store.rsAllData = Table();
    store.rsAlleleData = Table();

    sink.Begin(header);
    StudyCounts counts;
    RunStudy(chosen, header.settings, [&](PopulationResult&& population) {
        // The engine's message leaves out what stopped the run; here a setting did.
        if (population.stopReason == StopReason::SuspectValues && population.action == "stop")
            population.error->insert(population.error->size() - 1, " (--on-suspect stop)");
        const auto index = static_cast<std::size_t>(population.number - 1);
        if (index < job.populationNames.size() && !job.populationNames[index].empty())
            population.name = job.populationNames[index];
        ++(population.Analysed() ? counts.analysed : counts.stopped);
        sink.Population(population);
    });
    sink.End();
    return counts;
}

}  // namespace tavrelle
