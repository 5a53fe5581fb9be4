-- The tables of the example library, in the order in which they are made.

CREATE TABLE Branches (
  BranchID Integer PRIMARY KEY,
  Branch Varchar (40) NOT NULL,
  "Street address" Varchar (80),
  Opened Datetime,
  Latitude Double,
  Longitude Double,
  "Height above sea" SmallInt,
  "Floor area" Float,
  "Step-free" Bit,
  "Visitors since opening" Integer Unsigned,
  "Opening hours" Text,
  Stamp Varbinary (64));

CREATE TABLE Authors (
  AuthorID Integer PRIMARY KEY,
  Name Varchar (60) NOT NULL,
  "Own script" Varchar (60),
  Country Varchar (40),
  "Birth year" SmallInt,
  "Death year" SmallInt,
  "Years uncertain" Bit,
  Born Datetime,
  "Public domain on" Datetime,
  Note Text);

CREATE TABLE "Shelf Marks" (
  "Shelf mark" Varchar (3) PRIMARY KEY,
  Subject Varchar (40) NOT NULL,
  Room Varchar (40),
  Metres Double,
  "Label colour" Integer,
  Note Text);

CREATE TABLE Books (
  BookID Integer PRIMARY KEY,
  Title Varchar (80) NOT NULL,
  "Original title" Varchar (80),
  AuthorID Integer NOT NULL,
  "First appeared" SmallInt,
  Language Varchar (20),
  "Shelf mark" Varchar (3),
  Pages Unsigned SmallInt,
  Copies SmallInt,
  "Price when bought" Double,
  "Acquired on" Datetime,
  "Reference only" Bit,
  "Bar code" Integer Unsigned,
  Summary Text,
  "Librarian's note" Text,
  Cover Long Varbinary);

CREATE TABLE Members (
  MemberID Integer PRIMARY KEY,
  Name Varchar (60) NOT NULL,
  "Card number" Integer Unsigned NOT NULL,
  "Home branch" Integer,
  Born Datetime,
  Joined Datetime,
  "Valid until" Datetime,
  "Loans allowed" Unsigned SmallInt,
  Balance Double,
  "Wants reminders" Bit,
  Remark Text,
  Signature Varbinary (128));

CREATE TABLE Loans (
  LoanID Integer PRIMARY KEY,
  BookID Integer NOT NULL,
  MemberID Integer,
  BranchID Integer,
  "Lent on" Datetime,
  "Due on" Datetime,
  "Returned on" Datetime,
  "Days late" SmallInt,
  Renewals Unsigned SmallInt,
  Charge Double,
  "By machine" Bit,
  Remark Varchar (120));

CREATE TABLE "What's On" (
  EventID Integer PRIMARY KEY,
  Title Varchar (80) NOT NULL,
  BranchID Integer,
  "Starts at" Datetime,
  Minutes Unsigned SmallInt,
  Places Unsigned SmallInt,
  Cancelled Bit,
  Fee Double,
  Description Text);

CREATE INDEX AuthorsByName ON Authors (Name);
CREATE INDEX BooksByTitle ON Books (Title);
CREATE INDEX BooksByAuthor ON Books (AuthorID, "First appeared" DESC);
CREATE INDEX MembersByName ON Members (Name COLLATE NOCASE);
CREATE UNIQUE INDEX "Members by card" ON Members ("Card number");
CREATE INDEX LoansByBook ON Loans (BookID);
CREATE INDEX LoansByMember ON Loans (MemberID, "Lent on" DESC);

CREATE TABLE 'QuivaneQueries' (QueryName Text ,SQL Text);
