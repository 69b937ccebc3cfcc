#include "host/laz/Point14.h"

namespace Meseta47::host::laz {

void Point14Codec::Channel::restart(Point14 const& first) {
  last = first;
  lastTimeChanged = false;
  diffsX = diffsY = {};
  heights.fill(first.z);
  intensities.fill(first.intensity);
  for (auto& model : changes) model.reset(128);
  channelStep.reset(3);
  returns.reset();
  returnNumber.reset();
  returnStep.reset(13);
  dx.reset();
  dy.reset();
  z.reset();
  classification.reset();
  userData.reset();
  flags.reset();
  intensity.reset();
  angle.reset();
  sourceId.reset();
  times.restart(first.time);
}

void Point14Codec::restart(std::uint8_t const* first) {
  met_.fill(false);
  const Point14 point = Point14::from(first);
  channel_ = point.channel;
  changedChannel_ = false;
  begin(channel_, point);
}

void Point14Codec::begin(unsigned channel, Point14 const& first) {
  if (!channels_[channel]) channels_[channel] = std::make_unique<Channel>();
  channels_[channel]->restart(first);
  met_[channel] = true;
}

unsigned Point14Codec::kindOf(Point14 const& point) {
  // By number of returns, then return number. Six kinds are told apart: the only return, first and last of two, first
  // of more, one between, last of more; pairs that make no sense are spread over them.
  static constexpr std::uint8_t kKinds[16][16] = {
      {0, 1, 2, 3, 4, 5, 3, 4, 4, 5, 5, 5, 5, 5, 5, 5}, {1, 0, 1, 3, 3, 3, 3, 3, 3, 3, 3, 3, 3, 3, 3, 3},
      {2, 1, 2, 4, 4, 4, 4, 4, 4, 4, 4, 3, 3, 3, 3, 3}, {3, 3, 4, 5, 4, 4, 4, 4, 4, 4, 4, 4, 4, 4, 4, 4},
      {4, 3, 4, 4, 5, 4, 4, 4, 4, 4, 4, 4, 4, 4, 4, 4}, {5, 3, 4, 4, 4, 5, 4, 4, 4, 4, 4, 4, 4, 4, 4, 4},
      {3, 3, 4, 4, 4, 4, 5, 4, 4, 4, 4, 4, 4, 4, 4, 4}, {4, 3, 4, 4, 4, 4, 4, 5, 4, 4, 4, 4, 4, 4, 4, 4},
      {4, 3, 4, 4, 4, 4, 4, 4, 5, 4, 4, 4, 4, 4, 4, 4}, {5, 3, 4, 4, 4, 4, 4, 4, 4, 5, 4, 4, 4, 4, 4, 4},
      {5, 3, 4, 4, 4, 4, 4, 4, 4, 4, 5, 4, 4, 4, 4, 4}, {5, 3, 3, 4, 4, 4, 4, 4, 4, 4, 4, 5, 5, 4, 4, 4},
      {5, 3, 3, 4, 4, 4, 4, 4, 4, 4, 4, 5, 5, 5, 4, 4}, {5, 3, 3, 4, 4, 4, 4, 4, 4, 4, 4, 4, 5, 5, 5, 4},
      {5, 3, 3, 4, 4, 4, 4, 4, 4, 4, 4, 4, 4, 5, 5, 5}, {5, 3, 3, 4, 4, 4, 4, 4, 4, 4, 4, 4, 4, 4, 5, 5}};
  return kKinds[point.returns][point.returnNumber];
}

}  // namespace Meseta47::host::laz
