#pragma once
// Writes the in-memory book as a zipped workbook through libxlsxwriter.

#include "ReportEngine.h"

#include <QString>

// Throws XlError 1004 with a readable reason when the file cannot be written.
void WriteXlsx(const XlWorkbook& book, const QString& path);

// The solid fill colour (0xRRGGBB) of a theme colour with a tint, as the spreadsheet program draws it.
unsigned int ThemeFillColour(int themeColor, double tint);
