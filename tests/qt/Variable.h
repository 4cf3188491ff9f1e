#pragma once
#include <QByteArray>
#include <QtGlobal>

namespace pixelhain {

/// A variable of the environment as long as this lives.
class Variable {
public:
    /// Null for one that is not set.
    Variable(char const* name, QByteArray const& value)
        : name_(name)
        , before_(qgetenv(name))
        , wasThere_(qEnvironmentVariableIsSet(name))
    {
        if (value.isNull())
            qunsetenv(name);
        else
            qputenv(name, value);
    }
    Variable(Variable const&) = delete;
    Variable& operator=(Variable const&) = delete;
    ~Variable()
    {
        if (wasThere_)
            qputenv(name_, before_);
        else
            qunsetenv(name_);
    }

private:
    char const* name_;
    QByteArray before_;
    bool wasThere_;
};

} // namespace pixelhain
