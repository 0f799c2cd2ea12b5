#include "platform/ThirdCalibration.h"

#include "virtualphone/internal/PhoneState.h"

void ThirdCalibration::set3rdCalibration(unsigned char* data, int length) {
    if (virtualphone::PhoneState* phone = virtualphone::CurrentPhone()) {
        const int size = data == nullptr || length < 0 ? 0 : length;
        phone->sink.take(record::HandOver{.block = {data, data + size}});
    }
}
