// The owner of a COM object: ComPtr, which releases it.
#pragma once

#include <windows.h>

#include <wrl/client.h>

template <class Interface>
class ComPtr : public Microsoft::WRL::ComPtr<Interface>
{
public:
    using Microsoft::WRL::ComPtr<Interface>::ComPtr;

    // Owns an object that somebody else has counted already. The toolchain's own function counts it once more, against
    // its documentation, and the object would stay for good.
    void Attach(Interface* object) noexcept
    {
        this->Reset();
        *this->GetAddressOf() = object;
    }
};
