// The media's configuration. The pages only hand the pointer from the setup manager to the language manager.
#pragma once

class CConfigReader
{
public:
    virtual ~CConfigReader() = default;
};
