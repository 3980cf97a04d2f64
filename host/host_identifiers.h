#pragma once
// The identifiers of the host's classes and interfaces and of the upgrader
// interfaces, as the host knows them. The host never links the upgrader
// library, so it keeps its own copies of these fixed values.
#include "platform/com/guid.h"

namespace kdhost {

extern const com::IID kIidLogin;
extern const com::IID kIidProgressCallback;
extern const com::CLSID kClsidResourceStrings;
extern const com::IID kIidResourceStrings;
extern const com::CLSID kClsidCategoryService;
extern const com::IID kIidCategoryService;
extern const com::CLSID kClsidLogger;
extern const com::IID kIidLogger;
extern const com::CLSID kClsidInputBox;
extern const com::IID kIidInputBox;
extern const com::CLSID kClsidRegistry;
extern const com::IID kIidRegistry;
extern const com::CLSID kClsidProbe;
extern const com::IID kIidProbe;

extern const com::IID kIidDatabaseUpgrader;
extern const com::IID kIidRegInCat;

// The category code the upgraders register under, and the category
// identifier this host gives it.
constexpr int32_t kUpgraderCategoryCode = 122;
extern const char* const kUpgraderCategoryText;

}  // namespace kdhost
