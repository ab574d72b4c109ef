<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="en" sourcelanguage="en">
<context>
    <name>BatchPreview</name>
    <message>
        <source>the first MAC is not complete yet</source>
        <translation>the first MAC is not complete yet</translation>
    </message>
    <message>
        <source>%1 to %2</source>
        <comment>first and last of a range</comment>
        <translation>%1 to %2</translation>
    </message>
    <message>
        <source>no user IDs</source>
        <translation>no user IDs</translation>
    </message>
    <message>
        <source>user ID %1</source>
        <translation>user ID %1</translation>
    </message>
    <message>
        <source>user IDs %1 to %2</source>
        <translation>user IDs %1 to %2</translation>
    </message>
    <message>
        <source>No devices</source>
        <translation>No devices</translation>
    </message>
    <message>
        <source>1 device: %1, %2</source>
        <translation>1 device: %1, %2</translation>
    </message>
    <message>
        <source>%1 devices: %2, %3</source>
        <translation>%1 devices: %2, %3</translation>
    </message>
    <message>
        <source>, </source>
        <comment>between the names of fields</comment>
        <translation>, </translation>
    </message>
    <message>
        <source>No usable number, counts as none: %1.</source>
        <translation>No usable number, counts as none: %1.</translation>
    </message>
    <message>
        <source>It is in the list already.</source>
        <translation>It is in the list already.</translation>
    </message>
    <message>
        <source>%1 of them are in the list already.</source>
        <translation>%1 of them are in the list already.</translation>
    </message>
    <message>
        <source>The MACs repeat from device %1 on.</source>
        <translation>The MACs repeat from device %1 on.</translation>
    </message>
    <message>
        <source>1 of them is in the list already.</source>
        <translation>1 of them is in the list already.</translation>
    </message>
    <message>
        <source>The numbers end at %1.</source>
        <translation>The numbers end at %1.</translation>
    </message>
</context>
<context>
    <name>CellHover</name>
    <message>
        <source>View/Edit</source>
        <translation>View/Edit</translation>
    </message>
    <message>
        <source>Delete</source>
        <translation>Delete</translation>
    </message>
</context>
<context>
    <name>CommandBar</name>
    <message>
        <source>Your Device List</source>
        <translation>Your Device List</translation>
    </message>
    <message>
        <source>New</source>
        <translation>New</translation>
    </message>
    <message>
        <source>New Device</source>
        <translation>New Device</translation>
    </message>
    <message>
        <source>News</source>
        <translation>News</translation>
    </message>
    <message>
        <source>New Devices</source>
        <translation>New Devices</translation>
    </message>
    <message>
        <source>Import</source>
        <translation>Import</translation>
    </message>
    <message>
        <source>Import Device List</source>
        <translation>Import Device List</translation>
    </message>
    <message>
        <source>Export</source>
        <translation>Export</translation>
    </message>
    <message>
        <source>Export Device List</source>
        <translation>Export Device List</translation>
    </message>
    <message>
        <source>Delete All</source>
        <translation>Delete All</translation>
    </message>
    <message>
        <source>Delete All Devices</source>
        <translation>Delete All Devices</translation>
    </message>
    <message>
        <source>Total device</source>
        <translation>Total device</translation>
    </message>
    <message>
        <source>:</source>
        <translation>:</translation>
    </message>
    <message>
        <source>&amp;Close HTTPD</source>
        <translation>&amp;Close HTTPD</translation>
    </message>
    <message>
        <source>&amp;Open HTTPD</source>
        <translation>&amp;Open HTTPD</translation>
    </message>
    <message>
        <source>Close the HTTPD server</source>
        <translation>Close the HTTPD server</translation>
    </message>
    <message>
        <source>Open the HTTPD server</source>
        <translation>Open the HTTPD server</translation>
    </message>
    <message>
        <source>&amp;Disable PNP Server</source>
        <translation>&amp;Disable PNP Server</translation>
    </message>
    <message>
        <source>&amp;Enable PNP Server</source>
        <translation>&amp;Enable PNP Server</translation>
    </message>
    <message>
        <source>Phones that have asked for their file since the program was started: %1</source>
        <translation>Phones that have asked for their file since the program was started: %1</translation>
    </message>
</context>
<context>
    <name>CommandLine</name>
    <message>
        <source>&quot;%1&quot; lists the options.</source>
        <translation>&quot;%1&quot; lists the options.</translation>
    </message>
    <message>
        <source>Writes every device&apos;s provisioning document into the folder, which must exist.</source>
        <translation>Writes every device&apos;s provisioning document into the folder, which must exist.</translation>
    </message>
    <message>
        <source>folder</source>
        <translation>folder</translation>
    </message>
    <message>
        <source>With %1: removes the documents of devices that are not in the list.</source>
        <translation>With %1: removes the documents of devices that are not in the list.</translation>
    </message>
    <message>
        <source>Shows these options.</source>
        <translation>Shows these options.</translation>
    </message>
    <message>
        <source>Shows the version.</source>
        <translation>Shows the version.</translation>
    </message>
    <message>
        <source>Without options the window opens. With them the program needs no screen, and reads the stored list also while the window is open.</source>
        <translation>Without options the window opens. With them the program needs no screen, and reads the stored list also while the window is open.</translation>
    </message>
    <message>
        <source>&quot;%1&quot; is no option.</source>
        <translation>&quot;%1&quot; is no option.</translation>
    </message>
    <message>
        <source>The folder is missing.</source>
        <translation>The folder is missing.</translation>
    </message>
</context>
<context>
    <name>ContactDialog</name>
    <message>
        <source>Show Advance Settings</source>
        <translation>Show Advance Settings</translation>
    </message>
    <message>
        <source>MAC</source>
        <translation>MAC</translation>
    </message>
    <message>
        <source>Product Model</source>
        <translation>Product Model</translation>
    </message>
    <message>
        <source>Account</source>
        <translation>Account</translation>
    </message>
    <message>
        <source>SIP Server</source>
        <translation>SIP Server</translation>
    </message>
    <message>
        <source>SIP User ID</source>
        <translation>SIP User ID</translation>
    </message>
    <message>
        <source>Authentication ID</source>
        <translation>Authentication ID</translation>
    </message>
    <message>
        <source>Password</source>
        <translation>Password</translation>
    </message>
    <message>
        <source>IP</source>
        <translation>IP</translation>
    </message>
    <message>
        <source>Subnet</source>
        <translation>Subnet</translation>
    </message>
    <message>
        <source>Gateway IP</source>
        <translation>Gateway IP</translation>
    </message>
    <message>
        <source>DNS Server 1</source>
        <translation>DNS Server 1</translation>
    </message>
    <message>
        <source>DNS Server 2</source>
        <translation>DNS Server 2</translation>
    </message>
    <message>
        <source>Hide Advance Settings</source>
        <translation>Hide Advance Settings</translation>
    </message>
</context>
<context>
    <name>ContactForm</name>
    <message>
        <source>Yes</source>
        <translation>Yes</translation>
    </message>
    <message>
        <source>No</source>
        <translation>No</translation>
    </message>
    <message>
        <source>Speech Coding 1</source>
        <translation>Speech Coding 1</translation>
    </message>
    <message>
        <source>Speech Coding 2</source>
        <translation>Speech Coding 2</translation>
    </message>
    <message>
        <source>Username</source>
        <translation>Username</translation>
    </message>
    <message>
        <source>Language</source>
        <translation>Language</translation>
    </message>
    <message>
        <source>Random Port</source>
        <translation>Random Port</translation>
    </message>
    <message>
        <source>Keep-Alive</source>
        <translation>Keep-Alive</translation>
    </message>
    <message>
        <source>Enterprise Phonebook Path</source>
        <translation>Enterprise Phonebook Path</translation>
    </message>
    <message>
        <source>Dial Plan</source>
        <translation>Dial Plan</translation>
    </message>
    <message>
        <source>City</source>
        <translation>City</translation>
    </message>
    <message>
        <source>Company</source>
        <translation>Company</translation>
    </message>
    <message>
        <source>Department</source>
        <translation>Department</translation>
    </message>
    <message>
        <source>Proxy Server</source>
        <translation>Proxy Server</translation>
    </message>
</context>
<context>
    <name>ContactModel</name>
    <message>
        <source>No phone will get the settings of this device. A MAC address has 12 hexadecimal digits.</source>
        <translation>No phone will get the settings of this device. A MAC address has 12 hexadecimal digits.</translation>
    </message>
    <message>
        <source>No phone will get the settings of this device. Another one above it has the same MAC address.</source>
        <translation>No phone will get the settings of this device. Another one above it has the same MAC address.</translation>
    </message>
</context>
<context>
    <name>ContactTitle</name>
    <message>
        <source>No.</source>
        <translation>No.</translation>
    </message>
    <message>
        <source>MAC</source>
        <translation>MAC</translation>
    </message>
    <message>
        <source>Product</source>
        <translation>Product</translation>
    </message>
    <message>
        <source>SIP Server</source>
        <translation>SIP Server</translation>
    </message>
    <message>
        <source>Account</source>
        <translation>Account</translation>
    </message>
    <message>
        <source>SIP User ID</source>
        <translation>SIP User ID</translation>
    </message>
    <message>
        <source>City</source>
        <translation>City</translation>
    </message>
    <message>
        <source>Company</source>
        <translation>Company</translation>
    </message>
    <message>
        <source>Department</source>
        <translation>Department</translation>
    </message>
    <message>
        <source>Detail</source>
        <translation>Detail</translation>
    </message>
    <message>
        <source>Delete</source>
        <translation>Delete</translation>
    </message>
</context>
<context>
    <name>ContactView</name>
    <message>
        <source>Device list</source>
        <translation>Device list</translation>
    </message>
    <message>
        <source>No devices yet. Press &quot;New&quot; to create the first one.</source>
        <translation>No devices yet. Press &quot;New&quot; to create the first one.</translation>
    </message>
    <message>
        <source>No device matches the search.</source>
        <translation>No device matches the search.</translation>
    </message>
</context>
<context>
    <name>ContactsDialog</name>
    <message>
        <source>Product Count</source>
        <translation>Product Count</translation>
    </message>
    <message>
        <source>Law of increasing MAC</source>
        <translation>Law of increasing MAC</translation>
    </message>
    <message>
        <source>Law of increasing User ID</source>
        <translation>Law of increasing User ID</translation>
    </message>
    <message>
        <source>First MAC</source>
        <translation>First MAC</translation>
    </message>
    <message>
        <source>Product Model</source>
        <translation>Product Model</translation>
    </message>
    <message>
        <source>SIP Server</source>
        <translation>SIP Server</translation>
    </message>
    <message>
        <source>First SIP User ID</source>
        <translation>First SIP User ID</translation>
    </message>
    <message>
        <source>First Authentication ID</source>
        <translation>First Authentication ID</translation>
    </message>
    <message>
        <source>First Account</source>
        <translation>First Account</translation>
    </message>
    <message>
        <source>Password</source>
        <translation>Password</translation>
    </message>
    <message>
        <source>At most %1 devices can be created in one step.</source>
        <translation>At most %1 devices can be created in one step.</translation>
    </message>
    <message>
        <source>How far apart the user IDs are. With 1, 1001 is followed by 1002.</source>
        <translation>How far apart the user IDs are. With 1, 1001 is followed by 1002.</translation>
    </message>
    <message>
        <source>Follows the first SIP user ID, whatever is typed here: each device gets its own user ID here as well.</source>
        <translation>Follows the first SIP user ID, whatever is typed here: each device gets its own user ID here as well.</translation>
    </message>
    <message>
        <source>How far apart the MAC addresses are. With 2, 02:00:A7:00:00:08 is followed by 02:00:A7:00:00:0A.</source>
        <translation>How far apart the MAC addresses are. With 2, 02:00:A7:00:00:08 is followed by 02:00:A7:00:00:0A.</translation>
    </message>
</context>
<context>
    <name>DataMgr</name>
    <message>
        <source>The request log can not be written: %1. The phones get their files all the same.</source>
        <translation>The request log can not be written: %1. The phones get their files all the same.</translation>
    </message>
</context>
<context>
    <name>DeviceFlow</name>
    <message>
        <source>New Device</source>
        <translation>New Device</translation>
    </message>
    <message>
        <source>New Devices</source>
        <translation>New Devices</translation>
    </message>
    <message>
        <source>Overview &amp;&amp; Edit</source>
        <translation>Overview &amp;&amp; Edit</translation>
    </message>
    <message>
        <source>Delete</source>
        <translation>Delete</translation>
    </message>
    <message>
        <source>Do you want to delete the device %1?</source>
        <translation>Do you want to delete the device %1?</translation>
    </message>
    <message>
        <source>Hidden by the search: %1</source>
        <translation>Hidden by the search: %1</translation>
    </message>
    <message>
        <source>Delete All Devices</source>
        <translation>Delete All Devices</translation>
    </message>
    <message>
        <source>Do you want to delete all devices?</source>
        <translation>Do you want to delete all devices?</translation>
    </message>
</context>
<context>
    <name>DocumentCommand</name>
    <message>
        <source>The folder %1 does not exist.</source>
        <translation>The folder %1 does not exist.</translation>
    </message>
    <message>
        <source>There is no list: %1 does not exist.</source>
        <translation>There is no list: %1 does not exist.</translation>
    </message>
    <message>
        <source>%1 can not be read: %2.</source>
        <translation>%1 can not be read: %2.</translation>
    </message>
    <message>
        <source>Documents written: %1, left as they were: %2, removed: %3.</source>
        <translation>Documents written: %1, left as they were: %2, removed: %3.</translation>
    </message>
    <message>
        <source>%1: an earlier device has the MAC &quot;%2&quot;</source>
        <translation>%1: an earlier device has the MAC &quot;%2&quot;</translation>
    </message>
    <message>
        <source>%1: &quot;%2&quot; is no MAC</source>
        <translation>%1: &quot;%2&quot; is no MAC</translation>
    </message>
    <message>
        <source>Devices without a document of their own: %1</source>
        <translation>Devices without a document of their own: %1</translation>
    </message>
</context>
<context>
    <name>DocumentWriter</name>
    <message>
        <source>%1 can not be written: %2.</source>
        <translation>%1 can not be written: %2.</translation>
    </message>
    <message>
        <source>%1 can not be removed: %2.</source>
        <translation>%1 can not be removed: %2.</translation>
    </message>
</context>
<context>
    <name>ExportFlow</name>
    <message>
        <source>Select a folder to export</source>
        <translation>Select a folder to export</translation>
    </message>
    <message>
        <source>Look in:</source>
        <translation>Look in:</translation>
    </message>
    <message>
        <source>Path Name</source>
        <translation>Path Name</translation>
    </message>
    <message>
        <source>Path Type</source>
        <translation>Path Type</translation>
    </message>
    <message>
        <source>Select</source>
        <translation>Select</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>Cancel</translation>
    </message>
    <message>
        <source>Export Box</source>
        <translation>Export Box</translation>
    </message>
    <message>
        <source>Please choose correct path to export.</source>
        <translation>Please choose correct path to export.</translation>
    </message>
    <message>
        <source>Replace action</source>
        <translation>Replace action</translation>
    </message>
    <message>
        <source>has already exist</source>
        <translation>has already exist</translation>
    </message>
    <message>
        <source>,</source>
        <translation>,</translation>
    </message>
    <message>
        <source>do you want to replace it?</source>
        <translation>do you want to replace it?</translation>
    </message>
    <message>
        <source>File has been exported successfully!</source>
        <translation>File has been exported successfully!</translation>
    </message>
    <message>
        <source>File export failed, please check directory!</source>
        <translation>File export failed, please check directory!</translation>
    </message>
</context>
<context>
    <name>ExportPage</name>
    <message>
        <source>Export file</source>
        <translation>Export file</translation>
    </message>
    <message>
        <source>Export to</source>
        <translation>Export to</translation>
    </message>
    <message>
        <source>Select path</source>
        <translation>Select path</translation>
    </message>
    <message>
        <source>Export</source>
        <translation>Export</translation>
    </message>
</context>
<context>
    <name>FormDialog</name>
    <message>
        <source>Save</source>
        <translation>Save</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>Cancel</translation>
    </message>
    <message>
        <source>Please fulfill correct MAC address!</source>
        <translation>Please fulfill correct MAC address!</translation>
    </message>
</context>
<context>
    <name>HelpFlow</name>
    <message>
        <source>Version: %1</source>
        <translation>Version: %1</translation>
    </message>
    <message>
        <source>Keeps the list of your desk phones and gives each one its configuration over the local network.</source>
        <translation>Keeps the list of your desk phones and gives each one its configuration over the local network.</translation>
    </message>
    <message>
        <source>Free software under the MIT licence.</source>
        <translation>Free software under the MIT licence.</translation>
    </message>
</context>
<context>
    <name>HiddenNote</name>
    <message>
        <source>Clear search</source>
        <translation>Clear search</translation>
    </message>
    <message>
        <source>Hidden by the search: %1, new or changed: %2</source>
        <translation>Hidden by the search: %1, new or changed: %2</translation>
    </message>
    <message>
        <source>Hidden by the search: %1</source>
        <translation>Hidden by the search: %1</translation>
    </message>
    <message>
        <source>Hidden: %1, new: %2</source>
        <translation>Hidden: %1, new: %2</translation>
    </message>
    <message>
        <source>Hidden: %1</source>
        <translation>Hidden: %1</translation>
    </message>
</context>
<context>
    <name>HttpdService</name>
    <message>
        <source>OK</source>
        <translation>OK</translation>
    </message>
    <message>
        <source>The server is running on</source>
        <translation>The server is running on</translation>
    </message>
    <message>
        <source>IP: %1</source>
        <translation>IP: %1</translation>
    </message>
    <message>
        <source>port: %1</source>
        <translation>port: %1</translation>
    </message>
    <message>
        <source>Unable to start the server: NIC device not found.</source>
        <translation>Unable to start the server: NIC device not found.</translation>
    </message>
    <message>
        <source>Unable to start the server: Not avaliable physical NIC!</source>
        <translation>Unable to start the server: Not avaliable physical NIC!</translation>
    </message>
    <message>
        <source>Open the default port 80 failed, please go to &apos;Options -&gt; Configuration Httpd Port&apos; to configure or use a random port.</source>
        <translation>Open the default port 80 failed, please go to &apos;Options -&gt; Configuration Httpd Port&apos; to configure or use a random port.</translation>
    </message>
    <message>
        <source>Open the custom port failed, the Httpd server will use a random port</source>
        <translation>Open the custom port failed, the Httpd server will use a random port</translation>
    </message>
    <message>
        <source>Unable to start the server: %1.</source>
        <translation>Unable to start the server: %1.</translation>
    </message>
    <message>
        <source>Httpd Server</source>
        <translation>Httpd Server</translation>
    </message>
</context>
<context>
    <name>HttpdThread</name>
    <message>
        <source>One device request cfg.</source>
        <translation>One device request cfg.</translation>
    </message>
    <message>
        <source>Product:</source>
        <translation>Product:</translation>
    </message>
    <message>
        <source>FileName:</source>
        <translation>FileName:</translation>
    </message>
</context>
<context>
    <name>ImportFault</name>
    <message>
        <source>The file cannot be read. Check that it is there, that you may read it and that no other program keeps it to itself.</source>
        <translation>The file cannot be read. Check that it is there, that you may read it and that no other program keeps it to itself.</translation>
    </message>
    <message>
        <source>The file is a copy that the import itself writes and removes. Copy it to another folder and import it from there.</source>
        <translation>The file is a copy that the import itself writes and removes. Copy it to another folder and import it from there.</translation>
    </message>
    <message>
        <source>The import cannot write its work files beside the program. Check that the disk is not full and that you may write to the folder.</source>
        <translation>The import cannot write its work files beside the program. Check that the disk is not full and that you may write to the folder.</translation>
    </message>
    <message>
        <source>The file is not a text file. If it comes from a spreadsheet program, save it there as &quot;CSV UTF-8&quot;.</source>
        <translation>The file is not a text file. If it comes from a spreadsheet program, save it there as &quot;CSV UTF-8&quot;.</translation>
    </message>
    <message>
        <source>The file says that it is Unicode text, but some of its bytes are not. It is damaged or cut off. Save it again as &quot;CSV UTF-8&quot;.</source>
        <translation>The file says that it is Unicode text, but some of its bytes are not. It is damaged or cut off. Save it again as &quot;CSV UTF-8&quot;.</translation>
    </message>
    <message>
        <source>The text is neither in UTF-8 nor in the encoding that is usual in your region. Save the file again as &quot;CSV UTF-8&quot;.</source>
        <translation>The text is neither in UTF-8 nor in the encoding that is usual in your region. Save the file again as &quot;CSV UTF-8&quot;.</translation>
    </message>
    <message>
        <source>The columns are separated by semicolons. Save the file again with commas between the columns.</source>
        <translation>The columns are separated by semicolons. Save the file again with commas between the columns.</translation>
    </message>
    <message>
        <source>The columns are separated by tabs. Save the file again with commas between the columns.</source>
        <translation>The columns are separated by tabs. Save the file again with commas between the columns.</translation>
    </message>
    <message>
        <source>The first line has the column titles of a phone book, not of a device list. Export a device list to see the titles that are needed.</source>
        <translation>The first line has the column titles of a phone book, not of a device list. Export a device list to see the titles that are needed.</translation>
    </message>
    <message>
        <source>No column has the title &quot;MAC&quot;. Add it to the first line, above the MAC addresses.</source>
        <translation>No column has the title &quot;MAC&quot;. Add it to the first line, above the MAC addresses.</translation>
    </message>
    <message>
        <source>The first line is a device. Put a line with the column titles above it, as in an exported device list.</source>
        <translation>The first line is a device. Put a line with the column titles above it, as in an exported device list.</translation>
    </message>
    <message>
        <source>The first line has no column titles of a device list. It needs &quot;MAC&quot; and at least one more title that an exported device list has.</source>
        <translation>The first line has no column titles of a device list. It needs &quot;MAC&quot; and at least one more title that an exported device list has.</translation>
    </message>
    <message>
        <source>The file is empty. Choose another one.</source>
        <translation>The file is empty. Choose another one.</translation>
    </message>
</context>
<context>
    <name>ImportFlow</name>
    <message>
        <source>Open an device list file (recommended devices.csv)</source>
        <translation>Open an device list file (recommended devices.csv)</translation>
    </message>
    <message>
        <source>Look in</source>
        <translation>Look in</translation>
    </message>
    <message>
        <source>File Name</source>
        <translation>File Name</translation>
    </message>
    <message>
        <source>File Type</source>
        <translation>File Type</translation>
    </message>
    <message>
        <source>Open</source>
        <translation>Open</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>Cancel</translation>
    </message>
    <message>
        <source>csv text device list(*.csv)</source>
        <translation>csv text device list(*.csv)</translation>
    </message>
    <message>
        <source>Import Box</source>
        <translation>Import Box</translation>
    </message>
    <message>
        <source>Please choose correct file to import.</source>
        <translation>Please choose correct file to import.</translation>
    </message>
    <message>
        <source>Import is failed, please check the file format and encoding.</source>
        <translation>Import is failed, please check the file format and encoding.</translation>
    </message>
    <message>
        <source>The file is not the reason. The device list can not be changed: %1.</source>
        <translation>The file is not the reason. The device list can not be changed: %1.</translation>
    </message>
</context>
<context>
    <name>ImportPage</name>
    <message>
        <source>Import file</source>
        <translation>Import file</translation>
    </message>
    <message>
        <source>Select File</source>
        <translation>Select File</translation>
    </message>
    <message>
        <source>Import</source>
        <translation>Import</translation>
    </message>
    <message>
        <source>Clear list</source>
        <translation>Clear list</translation>
    </message>
    <message>
        <source>The devices of the file are added to the present list.</source>
        <translation>The devices of the file are added to the present list.</translation>
    </message>
    <message>
        <source>When checked, the devices of the file are added to the present list; when unchecked, they replace it, and it is kept in the folder backup/.</source>
        <translation>When checked, the devices of the file are added to the present list; when unchecked, they replace it, and it is kept in the folder backup/.</translation>
    </message>
    <message>
        <source>The devices of the file replace the present list, which is kept in the folder backup/.</source>
        <translation>The devices of the file replace the present list, which is kept in the folder backup/.</translation>
    </message>
    <message>
        <source>Choose a file to see here what its import will do.</source>
        <translation>Choose a file to see here what its import will do.</translation>
    </message>
    <message>
        <source>Looking at the file...</source>
        <translation>Looking at the file...</translation>
    </message>
    <message>
        <source>1 row</source>
        <translation>1 row</translation>
    </message>
    <message>
        <source>%1 rows</source>
        <translation>%1 rows</translation>
    </message>
    <message>
        <source>%1, %2: %3 new, %4 in place of listed devices.</source>
        <comment>encoding, rows in the file</comment>
        <translation>%1, %2: %3 new, %4 in place of listed devices.</translation>
    </message>
    <message>
        <source>Rows that repeat a MAC of the file: %1.</source>
        <translation>Rows that repeat a MAC of the file: %1.</translation>
    </message>
    <message>
        <source>Listed devices that are not in the file and stay: %1.</source>
        <translation>Listed devices that are not in the file and stay: %1.</translation>
    </message>
    <message>
        <source>Listed devices that are not in the file and go: %1.</source>
        <translation>Listed devices that are not in the file and go: %1.</translation>
    </message>
    <message>
        <source>The file has every listed device.</source>
        <translation>The file has every listed device.</translation>
    </message>
</context>
<context>
    <name>IpLine</name>
    <message>
        <source>Stored: %1</source>
        <translation>Stored: %1</translation>
    </message>
    <message>
        <source>%1 %2 of %3</source>
        <translation>%1 %2 of %3</translation>
    </message>
    <message>
        <source>information</source>
        <translation>information</translation>
    </message>
    <message>
        <source>Incomplete address</source>
        <translation>Incomplete address</translation>
    </message>
    <message>
        <source>Incomplete address. Press Enter again to save it as it is.</source>
        <translation>Incomplete address. Press Enter again to save it as it is.</translation>
    </message>
</context>
<context>
    <name>IpPart</name>
    <message>
        <source>This text is no such address.</source>
        <translation>This text is no such address.</translation>
    </message>
    <message>
        <source>A MAC address has the digits 0 to 9 and A to F.</source>
        <translation>A MAC address has the digits 0 to 9 and A to F.</translation>
    </message>
    <message>
        <source>An IP address has the digits 0 to 9.</source>
        <translation>An IP address has the digits 0 to 9.</translation>
    </message>
    <message>
        <source>No part of an IP address exceeds 255.</source>
        <translation>No part of an IP address exceeds 255.</translation>
    </message>
    <message>
        <source>This part is complete. Select it to type over it.</source>
        <translation>This part is complete. Select it to type over it.</translation>
    </message>
</context>
<context>
    <name>LanguageSetting</name>
    <message>
        <source>Language change</source>
        <translation>Language change</translation>
    </message>
    <message>
        <source>Language change will take effect after reboot.</source>
        <translation>Language change will take effect after reboot.</translation>
    </message>
</context>
<context>
    <name>LanguageTable</name>
    <message>
        <source>English(US)</source>
        <translation>English(US)</translation>
    </message>
    <message>
        <source>Simplified Chinese</source>
        <translation>Simplified Chinese</translation>
    </message>
    <message>
        <source>Chinese Traditional</source>
        <translation>Chinese Traditional</translation>
    </message>
    <message>
        <source>Korean</source>
        <translation>Korean</translation>
    </message>
    <message>
        <source>Spanish</source>
        <translation>Spanish</translation>
    </message>
    <message>
        <source>Dutch</source>
        <extracomment>The phone will speak the language of the code, which is German.</extracomment>
        <translation>Dutch</translation>
    </message>
    <message>
        <source>French</source>
        <translation>French</translation>
    </message>
    <message>
        <source>Italian</source>
        <translation>Italian</translation>
    </message>
    <message>
        <source>Japanese</source>
        <translation>Japanese</translation>
    </message>
    <message>
        <source>Russian</source>
        <translation>Russian</translation>
    </message>
    <message>
        <source>Poland</source>
        <translation>Poland</translation>
    </message>
    <message>
        <source>Holland</source>
        <translation>Holland</translation>
    </message>
    <message>
        <source>Magyar</source>
        <translation>Magyar</translation>
    </message>
    <message>
        <source>Finland</source>
        <translation>Finland</translation>
    </message>
    <message>
        <source>Norsk</source>
        <translation>Norsk</translation>
    </message>
    <message>
        <source>Sweden</source>
        <translation>Sweden</translation>
    </message>
    <message>
        <source>Danish</source>
        <translation>Danish</translation>
    </message>
    <message>
        <source>Czech</source>
        <translation>Czech</translation>
    </message>
    <message>
        <source>Portugal</source>
        <translation>Portugal</translation>
    </message>
    <message>
        <source>English(UK)</source>
        <translation>English(UK)</translation>
    </message>
    <message>
        <source>Thailand</source>
        <translation>Thailand</translation>
    </message>
</context>
<context>
    <name>ListBoxes</name>
    <message>
        <source>The backup of the device list can not be written: %1. Do you want to go on without a backup?</source>
        <translation>The backup of the device list can not be written: %1. Do you want to go on without a backup?</translation>
    </message>
    <message>
        <source>Backup Error</source>
        <translation>Backup Error</translation>
    </message>
    <message>
        <source> has already exist</source>
        <translation> has already exist</translation>
    </message>
    <message>
        <source>,</source>
        <translation>,</translation>
    </message>
    <message>
        <source>do you want to replace it?</source>
        <translation>do you want to replace it?</translation>
    </message>
    <message>
        <source>Replace action</source>
        <translation>Replace action</translation>
    </message>
    <message>
        <source>Save Error</source>
        <translation>Save Error</translation>
    </message>
    <message>
        <source>The device list can not be changed: %1.</source>
        <translation>The device list can not be changed: %1.</translation>
    </message>
    <message>
        <source>The device list can not be saved: %1. It is kept in the window and will be saved with the next change.</source>
        <translation>The device list can not be saved: %1. It is kept in the window and will be saved with the next change.</translation>
    </message>
    <message>
        <source>The device list can not be saved: %1. It is kept in the window, and a copy is written when the program ends.</source>
        <translation>The device list can not be saved: %1. It is kept in the window, and a copy is written when the program ends.</translation>
    </message>
    <message>
        <source>The device list can not be saved: %1. A copy of it is kept in %2.</source>
        <translation>The device list can not be saved: %1. A copy of it is kept in %2.</translation>
    </message>
    <message>
        <source>Neither the device list nor a copy of it can be written: %1. Do you want to quit and lose the changes?</source>
        <translation>Neither the device list nor a copy of it can be written: %1. Do you want to quit and lose the changes?</translation>
    </message>
    <message>
        <source>Backup</source>
        <translation>Backup</translation>
    </message>
    <message>
        <source>phonebook.db held rows that are not in this list. The list is saved over them, and the file as it was is kept in %1.</source>
        <translation>phonebook.db held rows that are not in this list. The list is saved over them, and the file as it was is kept in %1.</translation>
    </message>
</context>
<context>
    <name>ListStore</name>
    <message>
        <source>the list is in use by the program &quot;%1&quot; on the computer &quot;%2&quot; (process %3). If that program no longer runs, remove the file %4</source>
        <translation>the list is in use by the program &quot;%1&quot; on the computer &quot;%2&quot; (process %3). If that program no longer runs, remove the file %4</translation>
    </message>
</context>
<context>
    <name>LoadingWidget</name>
    <message>
        <source>Operating,please wait.</source>
        <translation>Operating,please wait.</translation>
    </message>
</context>
<context>
    <name>MainMenu</name>
    <message>
        <source>&amp;File</source>
        <translation>&amp;File</translation>
    </message>
    <message>
        <source>&amp;New</source>
        <translation>&amp;New</translation>
    </message>
    <message>
        <source>construct a new device</source>
        <translation>construct a new device</translation>
    </message>
    <message>
        <source>&amp;News</source>
        <translation>&amp;News</translation>
    </message>
    <message>
        <source>construct new devices</source>
        <translation>construct new devices</translation>
    </message>
    <message>
        <source>&amp;Exit</source>
        <translation>&amp;Exit</translation>
    </message>
    <message>
        <source>Quit program</source>
        <translation>Quit program</translation>
    </message>
    <message>
        <source>&amp;Import</source>
        <translation>&amp;Import</translation>
    </message>
    <message>
        <source>&amp;Local Import</source>
        <translation>&amp;Local Import</translation>
    </message>
    <message>
        <source>Import file local</source>
        <translation>Import file local</translation>
    </message>
    <message>
        <source>&amp;Export</source>
        <translation>&amp;Export</translation>
    </message>
    <message>
        <source>&amp;Local Export</source>
        <translation>&amp;Local Export</translation>
    </message>
    <message>
        <source>Export file local</source>
        <translation>Export file local</translation>
    </message>
    <message>
        <source>&amp;Httpd</source>
        <translation>&amp;Httpd</translation>
    </message>
    <message>
        <source>Open httpd service</source>
        <translation>Open httpd service</translation>
    </message>
    <message>
        <source>&amp;Language</source>
        <translation>&amp;Language</translation>
    </message>
    <message>
        <source>&amp;Options</source>
        <translation>&amp;Options</translation>
    </message>
    <message>
        <source>Configure Httpd Port</source>
        <translation>Configure Httpd Port</translation>
    </message>
    <message>
        <source>&amp;Help</source>
        <translation>&amp;Help</translation>
    </message>
    <message>
        <source>Help</source>
        <translation>Help</translation>
    </message>
    <message>
        <source>User Guide Help</source>
        <translation>User Guide Help</translation>
    </message>
    <message>
        <source>&amp;About</source>
        <translation>&amp;About</translation>
    </message>
    <message>
        <source>About</source>
        <translation>About</translation>
    </message>
    <message>
        <source>Show about info</source>
        <translation>Show about info</translation>
    </message>
</context>
<context>
    <name>MainWindow</name>
    <message>
        <source>Velloran Device Management Tool</source>
        <translation>Velloran Device Management Tool</translation>
    </message>
    <message>
        <source>Database Error</source>
        <translation>Database Error</translation>
    </message>
    <message>
        <source>The device list in phonebook.db can not be read: %1. The file is left untouched and nothing will be saved in this run.</source>
        <translation>The device list in phonebook.db can not be read: %1. The file is left untouched and nothing will be saved in this run.</translation>
    </message>
    <message>
        <source>The device list is being read...</source>
        <translation>The device list is being read...</translation>
    </message>
</context>
<context>
    <name>Modal</name>
    <message>
        <source>Yes</source>
        <translation>Yes</translation>
    </message>
    <message>
        <source>No</source>
        <translation>No</translation>
    </message>
    <message>
        <source>Yes to All</source>
        <translation>Yes to All</translation>
    </message>
    <message>
        <source>No to All</source>
        <translation>No to All</translation>
    </message>
</context>
<context>
    <name>NetCardItem</name>
    <message>
        <source>No IP</source>
        <translation>No IP</translation>
    </message>
</context>
<context>
    <name>NetCardSelectDialog</name>
    <message>
        <source>OK</source>
        <translation>OK</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>Cancel</translation>
    </message>
    <message>
        <source>Select avaliable NIC</source>
        <translation>Select avaliable NIC</translation>
    </message>
    <message>
        <source>No network card was found.</source>
        <translation>No network card was found.</translation>
    </message>
</context>
<context>
    <name>NotWritten</name>
    <message>
        <source>%1 can not be written: %2.</source>
        <translation>%1 can not be written: %2.</translation>
    </message>
</context>
<context>
    <name>OptionsSetting</name>
    <message>
        <source>Auto Start</source>
        <translation>Auto Start</translation>
    </message>
    <message>
        <source>auto start</source>
        <translation>auto start</translation>
    </message>
    <message>
        <source>Recovery Data</source>
        <translation>Recovery Data</translation>
    </message>
    <message>
        <source>recovery data</source>
        <translation>recovery data</translation>
    </message>
    <message>
        <source>Auto Httpd</source>
        <translation>Auto Httpd</translation>
    </message>
    <message>
        <source>auto httpd</source>
        <translation>auto httpd</translation>
    </message>
    <message>
        <source>Options change</source>
        <translation>Options change</translation>
    </message>
    <message>
        <source>Config&apos;s change will take effect after reboot.</source>
        <translation>Config&apos;s change will take effect after reboot.</translation>
    </message>
</context>
<context>
    <name>PathPage</name>
    <message>
        <source>Cancel</source>
        <translation>Cancel</translation>
    </message>
</context>
<context>
    <name>PhonesSeen</name>
    <message>
        <source>This phone has not asked for its file since the program was started.</source>
        <translation>This phone has not asked for its file since the program was started.</translation>
    </message>
    <message>
        <source>This phone last asked for its file at %1 from %2: %3.</source>
        <translation>This phone last asked for its file at %1 from %2: %3.</translation>
    </message>
</context>
<context>
    <name>PortDialog</name>
    <message>
        <source>Use the Default Port 80:</source>
        <translation>Use the Default Port 80:</translation>
    </message>
    <message>
        <source>OK</source>
        <translation>OK</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>Cancel</translation>
    </message>
    <message>
        <source>Configure Httpd Port</source>
        <translation>Configure Httpd Port</translation>
    </message>
    <message>
        <source>Custom Port (5000-65535):</source>
        <translation>Custom Port (5000-65535):</translation>
    </message>
    <message>
        <source>A running HTTPD keeps its port until it is closed and opened again.</source>
        <translation>A running HTTPD keeps its port until it is closed and opened again.</translation>
    </message>
</context>
<context>
    <name>PortSetting</name>
    <message>
        <source>Port Error</source>
        <translation>Port Error</translation>
    </message>
    <message>
        <source>The port should between 5000 and 65535!</source>
        <translation>The port should between 5000 and 65535!</translation>
    </message>
</context>
<context>
    <name>ReportBox</name>
    <message>
        <source>HTTPD server request informations</source>
        <translation>HTTPD server request informations</translation>
    </message>
</context>
<context>
    <name>RequestEnd</name>
    <message>
        <source>sent %1 bytes</source>
        <translation>sent %1 bytes</translation>
    </message>
    <message>
        <source>the phone gave up after %1 bytes</source>
        <translation>the phone gave up after %1 bytes</translation>
    </message>
    <message>
        <source>no answer, not in the list</source>
        <translation>no answer, not in the list</translation>
    </message>
    <message>
        <source>no answer, the document could not be written</source>
        <translation>no answer, the document could not be written</translation>
    </message>
    <message>
        <source>no answer, such a file name is refused</source>
        <translation>no answer, such a file name is refused</translation>
    </message>
    <message>
        <source>no answer, no document was asked for</source>
        <translation>no answer, no document was asked for</translation>
    </message>
    <message>
        <source>no answer, nothing was asked</source>
        <translation>no answer, nothing was asked</translation>
    </message>
    <message>
        <source>cut off after %1 bytes, to make room for other phones</source>
        <translation>cut off after %1 bytes, to make room for other phones</translation>
    </message>
    <message>
        <source>cut off after %1 bytes, as the service was closed</source>
        <translation>cut off after %1 bytes, as the service was closed</translation>
    </message>
    <message>
        <source>told where its file is</source>
        <translation>told where its file is</translation>
    </message>
    <message>
        <source>no answer, the request is malformed</source>
        <translation>no answer, the request is malformed</translation>
    </message>
    <message>
        <source>no answer, the request was repeated at once</source>
        <translation>no answer, the request was repeated at once</translation>
    </message>
    <message>
        <source>no answer, it would go to another network</source>
        <translation>no answer, it would go to another network</translation>
    </message>
    <message>
        <source>no answer, it would come back or go to everybody</source>
        <translation>no answer, it would come back or go to everybody</translation>
    </message>
    <message>
        <source>no answer, the request is too short for it</source>
        <translation>no answer, the request is too short for it</translation>
    </message>
    <message>
        <source>no answer, too many requests</source>
        <translation>no answer, too many requests</translation>
    </message>
    <message>
        <source>the answer could not be sent</source>
        <translation>the answer could not be sent</translation>
    </message>
    <message>
        <source>%1: %2</source>
        <translation>%1: %2</translation>
    </message>
    <message>
        <source>refused, not in the list</source>
        <translation>refused, not in the list</translation>
    </message>
    <message>
        <source>%1: plug and play, %2</source>
        <translation>%1: plug and play, %2</translation>
    </message>
    <message>
        <source>%1: plug and play of %2, %3</source>
        <translation>%1: plug and play of %2, %3</translation>
    </message>
</context>
<context>
    <name>SearchBar</name>
    <message>
        <source>Search %1</source>
        <translation>Search %1</translation>
    </message>
</context>
<context>
    <name>ServiceFlow</name>
    <message>
        <source>ServerIP:%1</source>
        <translation>ServerIP:%1</translation>
    </message>
    <message>
        <source>ServerIP%1:%2</source>
        <translation>ServerIP%1:%2</translation>
    </message>
    <message>
        <source>Port:%1</source>
        <translation>Port:%1</translation>
    </message>
    <message>
        <source>HTTPD server is running.</source>
        <translation>HTTPD server is running.</translation>
    </message>
    <message>
        <source>PNP service requires HTTPD enabled, please open HTTPD service first!</source>
        <translation>PNP service requires HTTPD enabled, please open HTTPD service first!</translation>
    </message>
    <message>
        <source>PNP service requires 5060 port, please stop other occupied service and try again!</source>
        <translation>PNP service requires 5060 port, please stop other occupied service and try again!</translation>
    </message>
    <message>
        <source>Enable PNP Server</source>
        <translation>Enable PNP Server</translation>
    </message>
</context>
<context>
    <name>SqliteDatabase</name>
    <message>
        <source>the database is in use by another program</source>
        <translation>the database is in use by another program</translation>
    </message>
    <message>
        <source>the database is read-only</source>
        <translation>the database is read-only</translation>
    </message>
    <message>
        <source>reading or writing the disk failed</source>
        <translation>reading or writing the disk failed</translation>
    </message>
    <message>
        <source>the database is damaged</source>
        <translation>the database is damaged</translation>
    </message>
    <message>
        <source>the disk is full</source>
        <translation>the disk is full</translation>
    </message>
    <message>
        <source>the database can not be opened</source>
        <translation>the database can not be opened</translation>
    </message>
    <message>
        <source>the file is not a database</source>
        <translation>the file is not a database</translation>
    </message>
    <message>
        <source>the database is not open</source>
        <translation>the database is not open</translation>
    </message>
    <message>
        <source>the last save was cut short, which the next start of the program puts right</source>
        <translation>the last save was cut short, which the next start of the program puts right</translation>
    </message>
    <message>
        <source>a newer version of this program has written the database</source>
        <translation>a newer version of this program has written the database</translation>
    </message>
    <message>
        <source>another file has taken its place</source>
        <translation>another file has taken its place</translation>
    </message>
</context>
<context>
    <name>UndoBar</name>
    <message>
        <source>%1, %2 replaced</source>
        <translation>%1, %2 replaced</translation>
    </message>
    <message>
        <source>Added %1</source>
        <translation>Added %1</translation>
    </message>
    <message>
        <source>Replaced %1</source>
        <translation>Replaced %1</translation>
    </message>
    <message>
        <source>%1 devices added</source>
        <translation>%1 devices added</translation>
    </message>
    <message>
        <source>Changed %1</source>
        <translation>Changed %1</translation>
    </message>
    <message>
        <source>A device changed, another replaced</source>
        <translation>A device changed, another replaced</translation>
    </message>
    <message>
        <source>Deleted %1</source>
        <translation>Deleted %1</translation>
    </message>
    <message>
        <source>All devices deleted: %1</source>
        <translation>All devices deleted: %1</translation>
    </message>
    <message>
        <source>Imported %1</source>
        <translation>Imported %1</translation>
    </message>
    <message>
        <source>%1 devices imported</source>
        <translation>%1 devices imported</translation>
    </message>
    <message>
        <source>Undo</source>
        <translation>Undo</translation>
    </message>
    <message>
        <source>Undone: %1</source>
        <translation>Undone: %1</translation>
    </message>
    <message>
        <source>Redo</source>
        <translation>Redo</translation>
    </message>
</context>
<context>
    <name>UserGuide</name>
    <message>
        <source>Create single device</source>
        <translation>Create single device</translation>
    </message>
    <message>
        <source>You can click on the New File to create a new device. Fill in all the nessesary messages like MAC, SIP Authentication ID, SIP Authentication Password and so on, then click save.</source>
        <translation>You can click on the New File to create a new device. Fill in all the nessesary messages like MAC, SIP Authentication ID, SIP Authentication Password and so on, then click save.</translation>
    </message>
    <message>
        <source>Create several devices by order</source>
        <translation>Create several devices by order</translation>
    </message>
    <message>
        <source>Click on the Create by order button to create several devices with MAC and User ID increased by integer you determined, Fill in other messages useful to you, then click save.</source>
        <translation>Click on the Create by order button to create several devices with MAC and User ID increased by integer you determined, Fill in other messages useful to you, then click save.</translation>
    </message>
    <message>
        <source>Import an exist device file</source>
        <translation>Import an exist device file</translation>
    </message>
    <message>
        <source>By clicking Import button on the menu bar, you can select a csv format file that contains several device information to import.</source>
        <translation>By clicking Import button on the menu bar, you can select a csv format file that contains several device information to import.</translation>
    </message>
    <message>
        <source>Export current devices</source>
        <translation>Export current devices</translation>
    </message>
    <message>
        <source>You can export all existed device infomation in the tool to where you want to place it, exported file&apos;s name is devices.csv. You can edit it with Office Excel.</source>
        <translation>You can export all existed device infomation in the tool to where you want to place it, exported file&apos;s name is devices.csv. You can edit it with Office Excel.</translation>
    </message>
    <message>
        <source>View and Modifications</source>
        <translation>View and Modifications</translation>
    </message>
    <message>
        <source>Clicking eye looked icon belongs to every single item can popup a dialog that is same with New File dialog that contains all messages of the device you have clicked. You can also do some modifications in the dialog, click save to take effect.</source>
        <translation>Clicking eye looked icon belongs to every single item can popup a dialog that is same with New File dialog that contains all messages of the device you have clicked. You can also do some modifications in the dialog, click save to take effect.</translation>
    </message>
    <message>
        <source>Search by keyword</source>
        <translation>Search by keyword</translation>
    </message>
    <message>
        <source>You can search the device you want to by entering keyword in input box above every column. Such as MAC, IP and so on.</source>
        <translation>You can search the device you want to by entering keyword in input box above every column. Such as MAC, IP and so on.</translation>
    </message>
    <message>
        <source>Language Option</source>
        <translation>Language Option</translation>
    </message>
    <message>
        <source>Select the menu language options, the current tool support between Chinese and english. And the language switch will start after reboot take effect.</source>
        <translation>Select the menu language options, the current tool support between Chinese and english. And the language switch will start after reboot take effect.</translation>
    </message>
    <message>
        <source>Other config options</source>
        <translation>Other config options</translation>
    </message>
    <message>
        <source>Select the menu option button, tool provides some config options include startup boot, edit recovery and auto httpd server. Startup boot means Start up tool with your pc. Edit recovery means recovery the status of the tool&apos;s last save and exit. Automaticly Open httpd server when you pitch on the menu of auto httpd server.</source>
        <translation>Select the menu option button, tool provides some config options include startup boot, edit recovery and auto httpd server. Startup boot means Start up tool with your pc. Edit recovery means recovery the status of the tool&apos;s last save and exit. Automaticly Open httpd server when you pitch on the menu of auto httpd server.</translation>
    </message>
    <message>
        <source>Httpd Server and PNP Server</source>
        <translation>Httpd Server and PNP Server</translation>
    </message>
    <message>
        <source>Click Open Httpd Server button to start a http server to provide CFG when some devices is asking for it, PNP Server is used to broadcast Config Server Path to every exist device in tool which is httpd server path in fact. These two servers provide a convinent way to apply CFG change to all devices in the tool.</source>
        <translation>Click Open Httpd Server button to start a http server to provide CFG when some devices is asking for it, PNP Server is used to broadcast Config Server Path to every exist device in tool which is httpd server path in fact. These two servers provide a convinent way to apply CFG change to all devices in the tool.</translation>
    </message>
    <message>
        <source>Previous page</source>
        <translation>Previous page</translation>
    </message>
    <message>
        <source>Next page</source>
        <translation>Next page</translation>
    </message>
    <message>
        <source>Velloran Device Management Tool Help</source>
        <translation>Velloran Device Management Tool Help</translation>
    </message>
</context>
<context>
    <name>WholeFile</name>
    <message>
        <source>the disk is full</source>
        <translation>the disk is full</translation>
    </message>
    <message>
        <source>the file is too large</source>
        <translation>the file is too large</translation>
    </message>
    <message>
        <source>the disk is read-only</source>
        <translation>the disk is read-only</translation>
    </message>
    <message>
        <source>the permission to write is missing</source>
        <translation>the permission to write is missing</translation>
    </message>
    <message>
        <source>the folder does not exist</source>
        <translation>the folder does not exist</translation>
    </message>
    <message>
        <source>a folder has the file&apos;s name</source>
        <translation>a folder has the file&apos;s name</translation>
    </message>
    <message>
        <source>the file is in use by another program</source>
        <translation>the file is in use by another program</translation>
    </message>
    <message>
        <source>reading or writing the disk failed</source>
        <translation>reading or writing the disk failed</translation>
    </message>
</context>
</TS>
