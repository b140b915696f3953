#pragma once

namespace sysadmin {

class Robot;

/// The steps of a typical change in the sample library: sign on, open the vendor types, rename one, add one,
/// delete it again; a picture of each.
void PlanTour(Robot& robot);

} // namespace sysadmin
