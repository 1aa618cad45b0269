// The verbs that ask one question: name and version.
#include <skuanctl/program.h>

namespace {

class Name : public Verb
{
public:
    using Verb::Verb;

    void start() override
    {
        program_.link().cmd_get_computer_name(
            AFunction1<AString>::member<&Name::show>(this),
            AFunction2<AString, KVRP3::ErrorCode>::member<&Name::on_error>(this));
    }

private:
    void show(AString name)
    {
        program_.output().line(name, {{"computer_name", QString(name)}});
        program_.done();
    }
};

class Version : public Verb
{
public:
    using Verb::Verb;

    void start() override
    {
        program_.link().cmd_get_version_info(
            AFunction2<AString, AString>::member<&Version::show>(this),
            AFunction2<AString, KVRP3::ErrorCode>::member<&Version::on_error>(this));
    }

private:
    void show(AString version, AString path)
    {
        program_.output().line(QStringLiteral("%1 %2").arg(QString(version), QString(path)),
                               {{"version", QString(version)}, {"path", QString(path)}});
        program_.done();
    }
};

} // namespace

std::unique_ptr<Verb> make_name(Program& program)
{
    return std::make_unique<Name>(program);
}

std::unique_ptr<Verb> make_version(Program& program)
{
    return std::make_unique<Version>(program);
}
