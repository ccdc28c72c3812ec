#pragma once
// The diesel rebate settings: one row of `rebate`, read by the vehicle screen and the rebate reports.

#include <QString>

// The setting at fieldIndex of the one row (0 rebaterate in cents per litre, 1 rebatesars in percent), as a
// 16-bit integer: a decimal setting arrives rounded. 0 when the table or the row is missing.
int RebateSetting(int fieldIndex);

// The rate as text for the vehicle screen's box: "0" when it cannot be read.
QString GetRebateRate();
