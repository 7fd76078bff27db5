// The owner of a COM object: ComPtr, which releases it.
#pragma once

#include <windows.h>

#include <wrl/client.h>

template <class Interface>
using ComPtr = Microsoft::WRL::ComPtr<Interface>;
