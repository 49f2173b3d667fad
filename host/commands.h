#pragma once
// One function for each command. They return the program's exit code and throw std::runtime_error with a text
// for people when the work can't be done.

#include "host/options.h"

namespace tarnwick::host {

int RunScan(const Options& options);
int RunApps(const Options& options);
int RunFind(const Options& options);
int RunDetails(const Options& options);
int RunWatch(const Options& options);
int RunExplain(const Options& options);
int RunDiff(const Options& options);
int RunCompletion(const Options& options);
int RunManual(const Options& options);
int RunEncipher(const Options& options);
int RunDecipher(const Options& options);
int RunCapture(const Options& options);
int RunCatalogueCheck(const Options& options);
int RunCatalogueFix(const Options& options);
int RunCatalogueFromCsv(const Options& options);
int RunCatalogueToCsv(const Options& options);
int RunCatalogueMerge(const Options& options);
int RunCatalogueDiff(const Options& options);
int RunCatalogueShow(const Options& options);
int RunCatalogueImportSteam(const Options& options);
int RunCatalogueImportInstalled(const Options& options);

}  // namespace tarnwick::host
