#pragma once
// The entry points the component runtime finds in this library by name.
#include "platform/com/guid.h"
#include "platform/com/unknown.h"

extern "C" {
// A class factory for one of the library's classes.
com::HRESULT DllGetClassObject(const com::GUID& clsid, const com::GUID& iid, void** out);
// Writes every class (in declared order) and the interface descriptions
// into the registry; DllUnregisterServer removes them again.
com::HRESULT DllRegisterServer();
com::HRESULT DllUnregisterServer();
// S_OK when no object of the library and no factory lock is outstanding.
com::HRESULT DllCanUnloadNow();
// Run by the component runtime on each thread before the library's first
// object there: creates the thread's globals.
void DllThreadStartup();
}
