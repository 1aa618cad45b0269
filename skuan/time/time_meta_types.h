// Standards and timecodes as types that Qt can store and queue. They are registered when the library is
// loaded, under their full names: "Vantor::ATimecode".
#pragma once

#include <skuan/time/atimecode_range.h>
#include <skuan/time/timecode.h>
#include <skuan/time/track_set.h>

#include <QMetaType>

Q_DECLARE_METATYPE(Vantor::VideoFrequency)
Q_DECLARE_METATYPE(Vantor::VideoRoughFrequency)
Q_DECLARE_METATYPE(Vantor::VideoResolution)
Q_DECLARE_METATYPE(Vantor::VideoStandard)
Q_DECLARE_METATYPE(Vantor::DropframeFlag)
Q_DECLARE_METATYPE(Vantor::TrackType)
Q_DECLARE_METATYPE(Vantor::TrackSet)
Q_DECLARE_METATYPE(Vantor::ATimecode)
Q_DECLARE_METATYPE(Vantor::ATimecodeRange)
Q_DECLARE_METATYPE(Timecode)
