// Between the item's text and the standard.
#include <skuan/config/video_standard_model.h>

#include <skuan/config/cf_item_model.h>
#include <skuan/config/cf_model.h>
#include <skuan/foundation/assertfail.h>

#include <algorithm>

using namespace Vantor;

namespace {

QString item_name()
{
    return QStringLiteral("VideoStandard");
}

/// The server's texts are those of the protocol.
VideoStandard standard_of(const QString& text)
{
    KVRP3::VideoStandard standard{};
    return KVRP3::string_to_VideoStandard(text, &standard) ? toVideoStandard(standard)
                                                           : VideoStandard_invalid;
}

} // namespace

VideoStandardModel::VideoStandardModel(CFModel* model, QObject* parent) : QObject(parent)
{
    if (SKUAN_CHECK(model != nullptr))
        follow(model->get_item(item_name()));
}

VideoStandardModel::VideoStandardModel(QObject* parent) : QObject(parent)
{
    follow(CFModel::get_item_localhost(item_name()));
}

void VideoStandardModel::follow(CFItemModel* item)
{
    item_ = item;
    connect(item, qOverload<QString>(&CFItemModel::changed), this, &VideoStandardModel::model_changed);
}

VideoStandard VideoStandardModel::get() const
{
    return item_ ? standard_of(item_->get()) : VideoStandard_invalid;
}

VideoFrequency VideoStandardModel::get_frequency() const
{
    return toVideoFrequency(get());
}

VideoResolution VideoStandardModel::get_resolution() const
{
    return toVideoResolution(get());
}

bool VideoStandardModel::have_cf() const
{
    return item_ && item_->have_cf();
}

QList<VideoStandard> VideoStandardModel::allowed_values() const
{
    QList<VideoStandard> result;
    for (const QString& text : item_ ? item_->allowed_values() : QStringList())
        if (const VideoStandard standard = standard_of(text))
            result.push_back(standard);
    return result;
}

bool VideoStandardModel::allowed(VideoStandard standard) const
{
    return allowed_values().contains(standard);
}

bool VideoStandardModel::allowed(VideoFrequency frequency) const
{
    const auto all = allowed_values();
    return std::any_of(all.begin(), all.end(), [=](auto x) { return toVideoFrequency(x) == frequency; });
}

bool VideoStandardModel::allowed(VideoResolution resolution) const
{
    const auto all = allowed_values();
    return std::any_of(all.begin(), all.end(), [=](auto x) { return toVideoResolution(x) == resolution; });
}

bool VideoStandardModel::allowed(VideoFrequency frequency, VideoResolution resolution) const
{
    return allowed(toVideoStandard(resolution, frequency));
}

void VideoStandardModel::set(VideoStandard standard)
{
    if (item_ && isValid(standard))
        item_->set(QString(KVRP3::VideoStandard_to_string(to_kvrp3(standard))));
}

void VideoStandardModel::set(VideoFrequency frequency, VideoResolution resolution)
{
    if (item_)
        item_->set(static_cast<int>(toVideoStandard(resolution, frequency)));
}

// A slot may edit the item, so that these signals come in the midst of themselves, or end this model. Each
// therefore takes the value anew: none tells of one that has been replaced before it.
void VideoStandardModel::model_changed()
{
    const QPointer<VideoStandardModel> alive(this);
    Q_EMIT changed(get());
    if (alive)
        Q_EMIT changed(get_frequency(), get_resolution());
    if (alive)
        Q_EMIT changed(get_frequency());
    if (alive)
        Q_EMIT changed(get_resolution());
}
