#include "sdk/open/developing/picture_maker.h"

#include "sdk/open/developing/developed_picture.h"
#include "sdk/open/developing/development.h"
#include "sdk/open/developing/libraw_picture.h"

namespace sdk_open {

std::unique_ptr<finished_picture> make_picture(raw_decoder& decoder) {
    if (development::is_for(decoder.inq_data()))
        return std::make_unique<developed_picture>(decoder);
    return std::make_unique<libraw_picture>(decoder);
}

} // namespace sdk_open
