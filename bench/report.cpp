#include "bench/report.h"

#include <unistd.h>

#include <fstream>
#include <map>
#include <string>

namespace bench {

namespace {

// Below this a time is mostly the machine's noise, not the upgrader's.
constexpr double kShortestJudged = 0.02;

const char* const kUpdateHistoryLine = "  of which UpdateHistory";

std::string CpuModel() {
    std::ifstream cpuinfo("/proc/cpuinfo");
    std::string line;
    while (std::getline(cpuinfo, line)) {
        if (line.compare(0, 10, "model name") == 0) {
            size_t colon = line.find(':');
            if (colon != std::string::npos) return line.substr(colon + 2);
        }
    }
    return "unknown";
}

double MiB(long kib) { return static_cast<double>(kib) / 1024.0; }

double Ratio(double run, double floor) { return floor > 0 ? run / floor : 0; }

const FloorSection* FloorOf(const FloorFigures& floor, const std::string& name) {
    for (const FloorSection& s : floor.sections)
        if (s.name == name) return &s;
    return nullptr;
}

const UpgraderFigures* RunOf(const RunFigures& run, const std::string& name) {
    for (const UpgraderFigures& u : run.upgraders)
        if (u.className == name) return &u;
    return nullptr;
}

// A floor's time for one section, or a negative number when the floor was
// not measured or the section is not in it.
double SectionSeconds(const FloorFigures& floor, bool measured, const std::string& name) {
    const FloorSection* section = measured ? FloorOf(floor, name) : nullptr;
    return section ? section->seconds : -1;
}

std::string RatioText(double run, double floor) {
    if (floor <= 0) return "-";
    char text[32];
    std::snprintf(text, sizeof text, "%.2f", run / floor);
    return text;
}

std::string SecondsText(double seconds) {
    if (seconds < 0) return "-";
    char text[32];
    std::snprintf(text, sizeof text, "%.3f", seconds);
    return text;
}

void Row(std::FILE* out, const std::string& name, double run, double ownFloor, double plainFloor, long long rows,
         double peakMiB) {
    std::fprintf(out, "%-30s %10.3f %10s %7s %10s %7s %11lld %12.0f %9.1f\n", name.c_str(), run,
                 SecondsText(ownFloor).c_str(), RatioText(run, ownFloor).c_str(), SecondsText(plainFloor).c_str(),
                 RatioText(run, plainFloor).c_str(), rows, run > 0 ? static_cast<double>(rows) / run : 0.0,
                 peakMiB);
}

void GrowthRow(std::FILE* out, const std::string& name, double first, double last, double dataFactor) {
    double growth = first > 0 ? last / first : 0;
    const char* verdict = last < kShortestJudged ? "too short to judge" : growth <= 1.2 * dataFactor ? "met" : "MISSED";
    std::fprintf(out, "%-30s %10.3f %10.3f %8.1fx  %s\n", name.c_str(), first, last, growth, verdict);
}

}  // namespace

void PrintMachine(std::FILE* out) {
    std::fprintf(out, "Machine: %ld processors, %s\n", ::sysconf(_SC_NPROCESSORS_ONLN), CpuModel().c_str());
}

void PrintScale(std::FILE* out, const ScaleResult& r) {
    const kdhost::SampleScaleCounts& c = r.counts;
    std::fprintf(out,
                 "\n== Scale %g: %lld rows generated in %.1f s (%lld transitions, %lld roles, %lld users, %lld history "
                 "rows, %lld session modifications, %lld designs, %lld subtasks)\n",
                 r.scale, static_cast<long long>(c.Total()), r.sampleSeconds, static_cast<long long>(c.transitions),
                 static_cast<long long>(c.roles), static_cast<long long>(c.users),
                 static_cast<long long>(c.historyRows), static_cast<long long>(c.sessionModifications),
                 static_cast<long long>(c.designs), static_cast<long long>(c.subtasks));
    if (!r.error.empty()) {
        std::fprintf(out, "FAILED at %s\n", r.error.c_str());
        return;
    }
    std::fprintf(out, "%-30s %10s %10s %7s %10s %7s %11s %12s %9s\n", "Upgrader", "run s", "own floor", "ratio",
                 "plain flr", "ratio", "rows", "rows/s", "peak MiB");
    auto floors = [&](const std::string& name) {
        return std::make_pair(SectionSeconds(r.floor, true, name),
                              SectionSeconds(r.plainFloor, r.plainFloorMeasured, name));
    };
    double upgraderSeconds = 0;
    for (const UpgraderFigures& u : r.run.upgraders) {
        auto [own, plain] = floors(u.className);
        Row(out, u.className + (u.succeeded ? "" : " (failed)"), u.seconds, own, plain, u.rowsChanged,
            MiB(u.peakKiB));
        const FloorSection* ownSection = FloorOf(r.floor, u.className);
        const FloorSection* plainSection = r.plainFloorMeasured ? FloorOf(r.plainFloor, u.className) : nullptr;
        if (u.historyUpdateSeconds > 0 || (ownSection && ownSection->historyUpdateSeconds > 0))
            Row(out, kUpdateHistoryLine, u.historyUpdateSeconds, ownSection ? ownSection->historyUpdateSeconds : -1,
                plainSection ? plainSection->historyUpdateSeconds : -1, 0, 0);
        upgraderSeconds += u.seconds;
    }
    auto [ownBetween, plainBetween] = floors(kBetweenUpgraders);
    Row(out, kBetweenUpgraders, r.run.seconds - upgraderSeconds, ownBetween, plainBetween, 0, 0);
    Row(out, r.run.succeeded ? "Whole run" : "Whole run (with failures)", r.run.seconds, r.floor.seconds,
        r.plainFloorMeasured ? r.plainFloor.seconds : -1, r.run.rowsChanged, MiB(r.runPeakKiB));
    std::fprintf(out, "Whole run / own floor %s, / plain floor %s\n", RatioText(r.run.seconds, r.floor.seconds).c_str(),
                 r.plainFloorMeasured ? RatioText(r.run.seconds, r.plainFloor.seconds).c_str()
                                      : "- (not replayed at this scale)");
    if (r.plainFloorMeasured && r.plainFloor.helperWork > 0)
        std::fprintf(out, "Plain floor: %llu statements of the helper indices' own work left out\n",
                     static_cast<unsigned long long>(r.plainFloor.helperWork));
    std::fprintf(out,
                 "Floor: %llu statements replayed, %llu refused by the engine as in the run, %llu not replayable\n",
                 static_cast<unsigned long long>(r.floor.statements), static_cast<unsigned long long>(r.floor.failures),
                 static_cast<unsigned long long>(r.floor.unreadable));
    if (r.floorAlongside)
        std::fprintf(out, "The floor was replayed alongside the run: the two shared the machine's processors, "
                          "disk and caches\n");
}

void PrintRunEnded(std::FILE* out, const ScaleResult& r) {
    std::fprintf(out, "\n-- Scale %g: the run has ended; its floor follows\n", r.scale);
    std::fprintf(out, "%-30s %10s %11s %12s %9s\n", "Upgrader", "run s", "rows", "rows/s", "peak MiB");
    auto line = [&](const std::string& name, double seconds, long long rows, double peakMiB) {
        std::fprintf(out, "%-30s %10.3f %11lld %12.0f %9.1f\n", name.c_str(), seconds, rows,
                     seconds > 0 ? static_cast<double>(rows) / seconds : 0.0, peakMiB);
    };
    for (const UpgraderFigures& u : r.run.upgraders) {
        line(u.className + (u.succeeded ? "" : " (failed)"), u.seconds, u.rowsChanged, MiB(u.peakKiB));
        if (u.historyUpdateSeconds > 0) line(kUpdateHistoryLine, u.historyUpdateSeconds, 0, 0);
    }
    line(r.run.succeeded ? "Whole run" : "Whole run (with failures)", r.run.seconds, r.run.rowsChanged,
         MiB(r.runPeakKiB));
}

void PrintFloorAgain(std::FILE* out, const FloorFigures& floor) {
    std::fprintf(out, "%-30s %10s %11s\n", "Section", "floor s", "statements");
    for (const FloorSection& s : floor.sections)
        std::fprintf(out, "%-30s %10.3f %11llu\n", s.name.c_str(), s.seconds,
                     static_cast<unsigned long long>(s.statements));
    std::fprintf(out, "%-30s %10.3f %11llu\n", "Whole floor", floor.seconds,
                 static_cast<unsigned long long>(floor.statements));
    std::fprintf(out, "%llu refused by the engine as in the run, %llu not replayable, %llu history per-user UPDATEs "
                      "left out\n",
                 static_cast<unsigned long long>(floor.failures), static_cast<unsigned long long>(floor.unreadable),
                 static_cast<unsigned long long>(floor.skipped));
}

void PrintGrowth(std::FILE* out, const ScaleResult& first, const ScaleResult& last) {
    double dataFactor = last.scale / first.scale;
    std::fprintf(out, "\n== Growth from scale %g to scale %g (data x%g; target: time at most x%g)\n", first.scale,
                 last.scale, dataFactor, 1.2 * dataFactor);
    std::fprintf(out, "%-30s %10s %10s %9s\n", "Upgrader", "first s", "last s", "growth");
    for (const UpgraderFigures& u : last.run.upgraders) {
        const UpgraderFigures* before = RunOf(first.run, u.className);
        if (!before) continue;
        GrowthRow(out, u.className, before->seconds, u.seconds, dataFactor);
        if (u.historyUpdateSeconds > 0)
            GrowthRow(out, kUpdateHistoryLine, before->historyUpdateSeconds, u.historyUpdateSeconds, dataFactor);
    }
    GrowthRow(out, "Whole run", first.run.seconds, last.run.seconds, dataFactor);
    if (last.floor.seconds > 0)
        std::fprintf(out, "Whole run / own floor at scale %g: %.2f (target <= 1.25); ", last.scale,
                     Ratio(last.run.seconds, last.floor.seconds));
    std::fprintf(out, "peak memory at scale %g: %.1f MiB (target < 256)\n", last.scale, MiB(last.runPeakKiB));
}

}  // namespace bench
