#include "bench/report.h"

#include <unistd.h>

#include <fstream>
#include <map>
#include <string>

namespace bench {

namespace {

// Upgraders whose own statements grow faster than the data by design:
// their fixed statement texts make per-object queries over whole tables.
const std::map<std::string, std::string>& QuadraticByDesign() {
    static const std::map<std::string, std::string> known = {
        {"KDVqUpgrader902", "UpdateHistory: one full-table UPDATE pair per user"},
        {"KDVqUpgrader901sp1", "four joined queries per role over the whole link tables"},
    };
    return known;
}

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

void Row(std::FILE* out, const std::string& name, double run, double floor, long long rows, double peakMiB) {
    std::fprintf(out, "%-30s %10.3f %10.3f %7.2f %11lld %12.0f %9.1f\n", name.c_str(), run, floor, Ratio(run, floor),
                 rows, run > 0 ? static_cast<double>(rows) / run : 0.0, peakMiB);
}

void GrowthRow(std::FILE* out, const std::string& name, double first, double last, double dataFactor,
               const std::string& note) {
    double growth = first > 0 ? last / first : 0;
    std::string verdict = note;
    if (verdict.empty() && last < kShortestJudged)
        verdict = "too short to judge";
    else if (verdict.empty())
        verdict = growth <= 1.2 * dataFactor ? "met" : "MISSED";
    std::fprintf(out, "%-30s %10.3f %10.3f %8.1fx  %s\n", name.c_str(), first, last, growth, verdict.c_str());
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
    std::fprintf(out, "%-30s %10s %10s %7s %11s %12s %9s\n", "Upgrader", "run s", "floor s", "ratio", "rows",
                 "rows/s", "peak MiB");
    double upgraderSeconds = 0;
    for (const UpgraderFigures& u : r.run.upgraders) {
        const FloorSection* floor = FloorOf(r.floor, u.className);
        Row(out, u.className + (u.succeeded ? "" : " (failed)"), u.seconds, floor ? floor->seconds : 0,
            u.rowsChanged, MiB(u.peakKiB));
        if (u.historyUpdateSeconds > 0 || (floor && floor->historyUpdateSeconds > 0))
            Row(out, kUpdateHistoryLine, u.historyUpdateSeconds, floor ? floor->historyUpdateSeconds : 0, 0, 0);
        upgraderSeconds += u.seconds;
    }
    const FloorSection* between = FloorOf(r.floor, kBetweenUpgraders);
    Row(out, kBetweenUpgraders, r.run.seconds - upgraderSeconds, between ? between->seconds : 0, 0, 0);
    Row(out, r.run.succeeded ? "Whole run" : "Whole run (with failures)", r.run.seconds, r.floor.seconds,
        r.run.rowsChanged, MiB(r.runPeakKiB));
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
    std::fprintf(out, "\n== Growth from scale %g to scale %g (data x%g; target: time at most x%g where the statements "
                      "are linear)\n",
                 first.scale, last.scale, dataFactor, 1.2 * dataFactor);
    std::fprintf(out, "%-30s %10s %10s %9s\n", "Upgrader", "first s", "last s", "growth");
    for (const UpgraderFigures& u : last.run.upgraders) {
        const UpgraderFigures* before = RunOf(first.run, u.className);
        if (!before) continue;
        auto known = QuadraticByDesign().find(u.className);
        if (known == QuadraticByDesign().end()) {
            GrowthRow(out, u.className, before->seconds, u.seconds, dataFactor, "");
            continue;
        }
        GrowthRow(out, u.className, before->seconds, u.seconds, dataFactor, "by design: " + known->second);
        if (u.historyUpdateSeconds > 0) {
            GrowthRow(out, kUpdateHistoryLine, before->historyUpdateSeconds, u.historyUpdateSeconds, dataFactor,
                      "quadratic by design (users x history rows)");
            GrowthRow(out, "  the rest of it", before->seconds - before->historyUpdateSeconds,
                      u.seconds - u.historyUpdateSeconds, dataFactor, "");
        }
    }
    GrowthRow(out, "Whole run", first.run.seconds, last.run.seconds, dataFactor, "includes the quadratic steps");
    if (last.floor.seconds > 0)
        std::fprintf(out, "Whole run / floor at scale %g: %.2f (target <= 1.25); ", last.scale,
                     Ratio(last.run.seconds, last.floor.seconds));
    std::fprintf(out, "peak memory at scale %g: %.1f MiB (target < 512)\n", last.scale, MiB(last.runPeakKiB));
}

}  // namespace bench
