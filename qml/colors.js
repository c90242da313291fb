.pragma library

var primary50 = "#FF555555";
var primary500 = "#39000000";
var secondary500 = "#0091f8";
var secondary900 = "#0077ca";
