<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="zh_CN" sourcelanguage="en">
<context>
    <name>BatchPreview</name>
    <message>
        <source>the first MAC is not complete yet</source>
        <translation>首个MAC尚未填写完整</translation>
    </message>
    <message>
        <source>%1 to %2</source>
        <comment>first and last of a range</comment>
        <translation>%1 至 %2</translation>
    </message>
    <message>
        <source>no user IDs</source>
        <translation>无用户ID</translation>
    </message>
    <message>
        <source>user ID %1</source>
        <translation>用户ID %1</translation>
    </message>
    <message>
        <source>user IDs %1 to %2</source>
        <translation>用户ID %1 至 %2</translation>
    </message>
    <message>
        <source>No devices</source>
        <translation>不创建任何设备</translation>
    </message>
    <message>
        <source>1 device: %1, %2</source>
        <translation>1 台设备：%1，%2</translation>
    </message>
    <message>
        <source>%1 devices: %2, %3</source>
        <translation>%1 台设备：%2，%3</translation>
    </message>
    <message>
        <source>, </source>
        <comment>between the names of fields</comment>
        <translation>、</translation>
    </message>
    <message>
        <source>No usable number, counts as none: %1.</source>
        <translation>以下各项不是可用的数字，视为未填：%1。</translation>
    </message>
    <message>
        <source>It is in the list already.</source>
        <translation>该设备已在列表中。</translation>
    </message>
    <message>
        <source>%1 of them are in the list already.</source>
        <translation>其中 %1 台已在列表中。</translation>
    </message>
    <message>
        <source>The MACs repeat from device %1 on.</source>
        <translation>MAC从第 %1 台设备起重复。</translation>
    </message>
    <message>
        <source>1 of them is in the list already.</source>
        <translation>其中 1 台已在列表中。</translation>
    </message>
    <message>
        <source>The numbers end at %1.</source>
        <translation>编号到 %1 为止。</translation>
    </message>
</context>
<context>
    <name>CellHover</name>
    <message>
        <source>View/Edit</source>
        <translation>查看/编辑</translation>
    </message>
    <message>
        <source>Delete</source>
        <translation>删除</translation>
    </message>
</context>
<context>
    <name>CommandBar</name>
    <message>
        <source>Your Device List</source>
        <translation>设备列表</translation>
    </message>
    <message>
        <source>New</source>
        <translation>新建</translation>
    </message>
    <message>
        <source>New Device</source>
        <translation>新建设备</translation>
    </message>
    <message>
        <source>News</source>
        <translation>批量新建</translation>
    </message>
    <message>
        <source>New Devices</source>
        <translation>批量新建设备</translation>
    </message>
    <message>
        <source>Import</source>
        <translation>导入</translation>
    </message>
    <message>
        <source>Import Device List</source>
        <translation>导入设备列表</translation>
    </message>
    <message>
        <source>Export</source>
        <translation>导出</translation>
    </message>
    <message>
        <source>Export Device List</source>
        <translation>导出设备列表</translation>
    </message>
    <message>
        <source>Delete All</source>
        <translation>全部删除</translation>
    </message>
    <message>
        <source>Delete All Devices</source>
        <translation>删除全部设备</translation>
    </message>
    <message>
        <source>Total device</source>
        <translation>设备总数</translation>
    </message>
    <message>
        <source>:</source>
        <translation>：</translation>
    </message>
    <message>
        <source>&amp;Close HTTPD</source>
        <translation>关闭HTTPD(&amp;T)</translation>
    </message>
    <message>
        <source>&amp;Open HTTPD</source>
        <translation>开启HTTPD(&amp;T)</translation>
    </message>
    <message>
        <source>Close the HTTPD server</source>
        <translation>关闭HTTPD服务器</translation>
    </message>
    <message>
        <source>Open the HTTPD server</source>
        <translation>开启HTTPD服务器</translation>
    </message>
    <message>
        <source>&amp;Disable PNP Server</source>
        <translation>停用PNP服务器(&amp;P)</translation>
    </message>
    <message>
        <source>&amp;Enable PNP Server</source>
        <translation>启用PNP服务器(&amp;P)</translation>
    </message>
    <message>
        <source>Phones that have asked for their file since the program was started: %1</source>
        <translation>程序启动以来已请求文件的话机：%1</translation>
    </message>
</context>
<context>
    <name>CommandLine</name>
    <message>
        <source>&quot;%1&quot; lists the options.</source>
        <translation>“%1”可列出所有选项。</translation>
    </message>
    <message>
        <source>Writes every device&apos;s provisioning document into the folder, which must exist.</source>
        <translation>将每台设备的配置文件写入该文件夹（须已存在）。</translation>
    </message>
    <message>
        <source>folder</source>
        <translation>文件夹</translation>
    </message>
    <message>
        <source>With %1: removes the documents of devices that are not in the list.</source>
        <translation>与 %1 同用：删除不在列表中的设备的配置文件。</translation>
    </message>
    <message>
        <source>Shows these options.</source>
        <translation>显示这些选项。</translation>
    </message>
    <message>
        <source>Shows the version.</source>
        <translation>显示版本。</translation>
    </message>
    <message>
        <source>Without options the window opens. With them the program needs no screen, and reads the stored list also while the window is open.</source>
        <translation>不带选项时打开窗口。带选项时无需屏幕，窗口打开时也可读取已保存的列表。</translation>
    </message>
    <message>
        <source>&quot;%1&quot; is no option.</source>
        <translation>“%1”不是选项。</translation>
    </message>
    <message>
        <source>The folder is missing.</source>
        <translation>缺少文件夹。</translation>
    </message>
</context>
<context>
    <name>ContactDialog</name>
    <message>
        <source>Show Advance Settings</source>
        <translation>显示高级设置</translation>
    </message>
    <message>
        <source>MAC</source>
        <translation>MAC</translation>
    </message>
    <message>
        <source>Product Model</source>
        <translation>设备型号</translation>
    </message>
    <message>
        <source>Account</source>
        <translation>分机号</translation>
    </message>
    <message>
        <source>SIP Server</source>
        <translation>SIP服务器</translation>
    </message>
    <message>
        <source>SIP User ID</source>
        <translation>用户ID</translation>
    </message>
    <message>
        <source>Authentication ID</source>
        <translation>鉴权ID</translation>
    </message>
    <message>
        <source>Password</source>
        <translation>密码</translation>
    </message>
    <message>
        <source>IP</source>
        <translation>IP</translation>
    </message>
    <message>
        <source>Subnet</source>
        <translation>子网</translation>
    </message>
    <message>
        <source>Gateway IP</source>
        <translation>网关IP</translation>
    </message>
    <message>
        <source>DNS Server 1</source>
        <translation>DNS服务器1</translation>
    </message>
    <message>
        <source>DNS Server 2</source>
        <translation>DNS服务器2</translation>
    </message>
    <message>
        <source>Hide Advance Settings</source>
        <translation>隐藏高级设置</translation>
    </message>
</context>
<context>
    <name>ContactForm</name>
    <message>
        <source>Yes</source>
        <translation>是</translation>
    </message>
    <message>
        <source>No</source>
        <translation>否</translation>
    </message>
    <message>
        <source>Speech Coding 1</source>
        <translation>语音编码1</translation>
    </message>
    <message>
        <source>Speech Coding 2</source>
        <translation>语音编码2</translation>
    </message>
    <message>
        <source>Username</source>
        <translation>用户名</translation>
    </message>
    <message>
        <source>Language</source>
        <translation>语言</translation>
    </message>
    <message>
        <source>Random Port</source>
        <translation>随机端口</translation>
    </message>
    <message>
        <source>Keep-Alive</source>
        <translation>保活（Keep-Alive）</translation>
    </message>
    <message>
        <source>Enterprise Phonebook Path</source>
        <translation>通讯录路径</translation>
    </message>
    <message>
        <source>Dial Plan</source>
        <translation>拨号规则</translation>
    </message>
    <message>
        <source>City</source>
        <translation>城市</translation>
    </message>
    <message>
        <source>Company</source>
        <translation>公司</translation>
    </message>
    <message>
        <source>Department</source>
        <translation>部门</translation>
    </message>
    <message>
        <source>Proxy Server</source>
        <translation>代理服务器</translation>
    </message>
</context>
<context>
    <name>ContactModel</name>
    <message>
        <source>No phone will get the settings of this device. A MAC address has 12 hexadecimal digits.</source>
        <translation>没有话机会取得该设备的配置。MAC地址应有12位十六进制数字。</translation>
    </message>
    <message>
        <source>No phone will get the settings of this device. Another one above it has the same MAC address.</source>
        <translation>没有话机会取得该设备的配置。上方的另一设备具有相同的MAC地址。</translation>
    </message>
</context>
<context>
    <name>ContactTitle</name>
    <message>
        <source>No.</source>
        <translation>序号</translation>
    </message>
    <message>
        <source>MAC</source>
        <translation>MAC</translation>
    </message>
    <message>
        <source>Product</source>
        <translation>设备型号</translation>
    </message>
    <message>
        <source>SIP Server</source>
        <translation>SIP服务器</translation>
    </message>
    <message>
        <source>Account</source>
        <translation>分机号</translation>
    </message>
    <message>
        <source>SIP User ID</source>
        <translation>用户ID</translation>
    </message>
    <message>
        <source>City</source>
        <translation>城市</translation>
    </message>
    <message>
        <source>Company</source>
        <translation>公司</translation>
    </message>
    <message>
        <source>Department</source>
        <translation>部门</translation>
    </message>
    <message>
        <source>Detail</source>
        <translation>详情</translation>
    </message>
    <message>
        <source>Delete</source>
        <translation>删除</translation>
    </message>
</context>
<context>
    <name>ContactView</name>
    <message>
        <source>Device list</source>
        <translation>设备列表</translation>
    </message>
    <message>
        <source>No devices yet. Press &quot;New&quot; to create the first one.</source>
        <translation>还没有设备。点击“新建”来创建第一台设备。</translation>
    </message>
    <message>
        <source>No device matches the search.</source>
        <translation>没有符合搜索条件的设备。</translation>
    </message>
</context>
<context>
    <name>ContactsDialog</name>
    <message>
        <source>Product Count</source>
        <translation>设备数量</translation>
    </message>
    <message>
        <source>Law of increasing MAC</source>
        <translation>MAC递增步长</translation>
    </message>
    <message>
        <source>Law of increasing User ID</source>
        <translation>用户ID递增步长</translation>
    </message>
    <message>
        <source>First MAC</source>
        <translation>首个MAC</translation>
    </message>
    <message>
        <source>Product Model</source>
        <translation>设备型号</translation>
    </message>
    <message>
        <source>SIP Server</source>
        <translation>SIP服务器</translation>
    </message>
    <message>
        <source>First SIP User ID</source>
        <translation>首个用户ID</translation>
    </message>
    <message>
        <source>First Authentication ID</source>
        <translation>首个鉴权ID</translation>
    </message>
    <message>
        <source>First Account</source>
        <translation>首个分机号</translation>
    </message>
    <message>
        <source>Password</source>
        <translation>密码</translation>
    </message>
    <message>
        <source>At most %1 devices can be created in one step.</source>
        <translation>一次最多可创建%1台设备。</translation>
    </message>
    <message>
        <source>How far apart the user IDs are. With 1, 1001 is followed by 1002.</source>
        <translation>相邻两个用户ID的间隔。为1时，1001之后是1002。</translation>
    </message>
    <message>
        <source>Follows the first SIP user ID, whatever is typed here: each device gets its own user ID here as well.</source>
        <translation>随首个用户ID变化，在此输入的内容不起作用：每台设备在此处同样使用自己的用户ID。</translation>
    </message>
    <message>
        <source>How far apart the MAC addresses are. With 2, 02:00:A7:00:00:08 is followed by 02:00:A7:00:00:0A.</source>
        <translation>相邻两个MAC地址的间隔。为2时，02:00:A7:00:00:08之后是02:00:A7:00:00:0A。</translation>
    </message>
</context>
<context>
    <name>DataMgr</name>
    <message>
        <source>The request log can not be written: %1. The phones get their files all the same.</source>
        <translation>无法写入请求日志：%1。话机仍可照常获取文件。</translation>
    </message>
</context>
<context>
    <name>DeviceFlow</name>
    <message>
        <source>New Device</source>
        <translation>新建设备</translation>
    </message>
    <message>
        <source>New Devices</source>
        <translation>批量新建设备</translation>
    </message>
    <message>
        <source>Overview &amp;&amp; Edit</source>
        <translation>查看与编辑</translation>
    </message>
    <message>
        <source>Delete</source>
        <translation>删除</translation>
    </message>
    <message>
        <source>Do you want to delete the device %1?</source>
        <translation>是否删除设备%1？</translation>
    </message>
    <message>
        <source>Hidden by the search: %1</source>
        <translation>被搜索条件隐藏：%1</translation>
    </message>
    <message>
        <source>Delete All Devices</source>
        <translation>删除全部设备</translation>
    </message>
    <message>
        <source>Do you want to delete all devices?</source>
        <translation>是否删除全部设备？</translation>
    </message>
</context>
<context>
    <name>DocumentCommand</name>
    <message>
        <source>The folder %1 does not exist.</source>
        <translation>文件夹 %1 不存在。</translation>
    </message>
    <message>
        <source>There is no list: %1 does not exist.</source>
        <translation>没有列表：%1 不存在。</translation>
    </message>
    <message>
        <source>%1 can not be read: %2.</source>
        <translation>无法读取 %1：%2。</translation>
    </message>
    <message>
        <source>Documents written: %1, left as they were: %2, removed: %3.</source>
        <translation>已写入文件：%1，保持不变：%2，已删除：%3。</translation>
    </message>
    <message>
        <source>%1: an earlier device has the MAC &quot;%2&quot;</source>
        <translation>%1：前面的设备已使用 MAC“%2”</translation>
    </message>
    <message>
        <source>%1: &quot;%2&quot; is no MAC</source>
        <translation>%1：“%2”不是 MAC</translation>
    </message>
    <message>
        <source>Devices without a document of their own: %1</source>
        <translation>没有自己配置文件的设备：%1</translation>
    </message>
</context>
<context>
    <name>DocumentWriter</name>
    <message>
        <source>%1 can not be written: %2.</source>
        <translation>无法写入 %1：%2。</translation>
    </message>
    <message>
        <source>%1 can not be removed: %2.</source>
        <translation>无法删除 %1：%2。</translation>
    </message>
</context>
<context>
    <name>ExportFlow</name>
    <message>
        <source>Select a folder to export</source>
        <translation>选择导出文件夹</translation>
    </message>
    <message>
        <source>Look in:</source>
        <translation>查找范围：</translation>
    </message>
    <message>
        <source>Path Name</source>
        <translation>路径名</translation>
    </message>
    <message>
        <source>Path Type</source>
        <translation>路径类型</translation>
    </message>
    <message>
        <source>Select</source>
        <translation>选择</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>取消</translation>
    </message>
    <message>
        <source>Export Box</source>
        <translation>导出</translation>
    </message>
    <message>
        <source>Please choose correct path to export.</source>
        <translation>请选择正确的导出路径。</translation>
    </message>
    <message>
        <source>Replace action</source>
        <translation>替换确认</translation>
    </message>
    <message>
        <source>has already exist</source>
        <translation>已存在</translation>
    </message>
    <message>
        <source>,</source>
        <translation>，</translation>
    </message>
    <message>
        <source>do you want to replace it?</source>
        <translation>是否替换？</translation>
    </message>
    <message>
        <source>File has been exported successfully!</source>
        <translation>文件导出成功！</translation>
    </message>
    <message>
        <source>File export failed, please check directory!</source>
        <translation>文件导出失败，请检查目录！</translation>
    </message>
</context>
<context>
    <name>ExportPage</name>
    <message>
        <source>Export file</source>
        <translation>导出文件</translation>
    </message>
    <message>
        <source>Export to</source>
        <translation>导出到</translation>
    </message>
    <message>
        <source>Select path</source>
        <translation>选择路径</translation>
    </message>
    <message>
        <source>Export</source>
        <translation>导出</translation>
    </message>
</context>
<context>
    <name>FormDialog</name>
    <message>
        <source>Save</source>
        <translation>保存</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>取消</translation>
    </message>
    <message>
        <source>Please fulfill correct MAC address!</source>
        <translation>请输入正确的MAC地址！</translation>
    </message>
</context>
<context>
    <name>HelpFlow</name>
    <message>
        <source>Version: %1</source>
        <translation>版本：%1</translation>
    </message>
    <message>
        <source>Keeps the list of your desk phones and gives each one its configuration over the local network.</source>
        <translation>管理您的话机列表，并通过局域网为每台话机下发配置。</translation>
    </message>
    <message>
        <source>Free software under the MIT licence.</source>
        <translation>基于MIT许可证的自由软件。</translation>
    </message>
</context>
<context>
    <name>HiddenNote</name>
    <message>
        <source>Clear search</source>
        <translation>清除搜索</translation>
    </message>
    <message>
        <source>Hidden by the search: %1, new or changed: %2</source>
        <translation>被搜索隐藏：%1，其中新增或修改：%2</translation>
    </message>
    <message>
        <source>Hidden by the search: %1</source>
        <translation>被搜索隐藏：%1</translation>
    </message>
    <message>
        <source>Hidden: %1, new: %2</source>
        <translation>已隐藏：%1，新：%2</translation>
    </message>
    <message>
        <source>Hidden: %1</source>
        <translation>已隐藏：%1</translation>
    </message>
</context>
<context>
    <name>HttpdService</name>
    <message>
        <source>OK</source>
        <translation>确定</translation>
    </message>
    <message>
        <source>The server is running on</source>
        <translation>服务器正在运行</translation>
    </message>
    <message>
        <source>IP: %1</source>
        <translation>IP：%1</translation>
    </message>
    <message>
        <source>port: %1</source>
        <translation>端口：%1</translation>
    </message>
    <message>
        <source>Unable to start the server: NIC device not found.</source>
        <translation>无法启动服务器：未找到网卡。</translation>
    </message>
    <message>
        <source>Unable to start the server: Not avaliable physical NIC!</source>
        <translation>无法启动服务器：没有可用的物理网卡！</translation>
    </message>
    <message>
        <source>Open the default port 80 failed, please go to &apos;Options -&gt; Configuration Httpd Port&apos; to configure or use a random port.</source>
        <translation>打开默认端口80失败，请在“选项 -&gt; 配置HTTPD端口”中更改端口，或使用随机端口。</translation>
    </message>
    <message>
        <source>Open the custom port failed, the Httpd server will use a random port</source>
        <translation>打开自定义端口失败，HTTPD服务器将使用随机端口</translation>
    </message>
    <message>
        <source>Unable to start the server: %1.</source>
        <translation>无法启动服务器：%1。</translation>
    </message>
    <message>
        <source>Httpd Server</source>
        <translation>HTTPD服务器</translation>
    </message>
</context>
<context>
    <name>HttpdThread</name>
    <message>
        <source>One device request cfg.</source>
        <translation>有一台设备请求配置文件。</translation>
    </message>
    <message>
        <source>Product:</source>
        <translation>设备型号：</translation>
    </message>
    <message>
        <source>FileName:</source>
        <translation>文件名：</translation>
    </message>
</context>
<context>
    <name>ImportFault</name>
    <message>
        <source>The file cannot be read. Check that it is there, that you may read it and that no other program keeps it to itself.</source>
        <translation>无法读取文件。请确认文件存在、您有权读取，且没有被其他程序独占。</translation>
    </message>
    <message>
        <source>The file is a copy that the import itself writes and removes. Copy it to another folder and import it from there.</source>
        <translation>该文件是导入时自动生成并删除的副本。请把它复制到其他文件夹后再导入。</translation>
    </message>
    <message>
        <source>The import cannot write its work files beside the program. Check that the disk is not full and that you may write to the folder.</source>
        <translation>无法在程序所在的文件夹中写入导入用的临时文件。请确认磁盘未满，且您有权写入该文件夹。</translation>
    </message>
    <message>
        <source>The file is not a text file. If it comes from a spreadsheet program, save it there as &quot;CSV UTF-8&quot;.</source>
        <translation>该文件不是文本文件。如果它来自电子表格程序，请在那里另存为“CSV UTF-8”。</translation>
    </message>
    <message>
        <source>The file says that it is Unicode text, but some of its bytes are not. It is damaged or cut off. Save it again as &quot;CSV UTF-8&quot;.</source>
        <translation>文件标明是Unicode文本，但其中有些字节不是。文件已损坏或不完整。请重新另存为“CSV UTF-8”。</translation>
    </message>
    <message>
        <source>The text is neither in UTF-8 nor in the encoding that is usual in your region. Save the file again as &quot;CSV UTF-8&quot;.</source>
        <translation>文本既不是UTF-8编码，也不是您所在地区的常用编码。请把文件重新另存为“CSV UTF-8”。</translation>
    </message>
    <message>
        <source>The columns are separated by semicolons. Save the file again with commas between the columns.</source>
        <translation>各列之间用的是分号。请重新保存文件，用逗号分隔各列。</translation>
    </message>
    <message>
        <source>The columns are separated by tabs. Save the file again with commas between the columns.</source>
        <translation>各列之间用的是制表符。请重新保存文件，用逗号分隔各列。</translation>
    </message>
    <message>
        <source>The first line has the column titles of a phone book, not of a device list. Export a device list to see the titles that are needed.</source>
        <translation>第一行是通讯录的列标题，而不是设备列表的。导出一份设备列表即可看到所需的列标题。</translation>
    </message>
    <message>
        <source>No column has the title &quot;MAC&quot;. Add it to the first line, above the MAC addresses.</source>
        <translation>没有标题为“MAC”的列。请在第一行中，在MAC地址的上方加上它。</translation>
    </message>
    <message>
        <source>The first line is a device. Put a line with the column titles above it, as in an exported device list.</source>
        <translation>第一行已经是一台设备。请在它上方加一行列标题，与导出的设备列表相同。</translation>
    </message>
    <message>
        <source>The first line has no column titles of a device list. It needs &quot;MAC&quot; and at least one more title that an exported device list has.</source>
        <translation>第一行没有设备列表的列标题。其中须有“MAC”，以及导出的设备列表中的至少一个其他列标题。</translation>
    </message>
    <message>
        <source>The file is empty. Choose another one.</source>
        <translation>文件是空的。请选择其他文件。</translation>
    </message>
</context>
<context>
    <name>ImportFlow</name>
    <message>
        <source>Open an device list file (recommended devices.csv)</source>
        <translation>打开设备列表文件（推荐devices.csv）</translation>
    </message>
    <message>
        <source>Look in</source>
        <translation>查找范围</translation>
    </message>
    <message>
        <source>File Name</source>
        <translation>文件名</translation>
    </message>
    <message>
        <source>File Type</source>
        <translation>文件类型</translation>
    </message>
    <message>
        <source>Open</source>
        <translation>打开</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>取消</translation>
    </message>
    <message>
        <source>csv text device list(*.csv)</source>
        <translation>CSV文本设备列表(*.csv)</translation>
    </message>
    <message>
        <source>Import Box</source>
        <translation>导入</translation>
    </message>
    <message>
        <source>Please choose correct file to import.</source>
        <translation>请选择正确的导入文件。</translation>
    </message>
    <message>
        <source>Import is failed, please check the file format and encoding.</source>
        <translation>导入失败，请检查文件格式和编码。</translation>
    </message>
    <message>
        <source>The file is not the reason. The device list can not be changed: %1.</source>
        <translation>原因不在该文件。无法更改设备列表：%1。</translation>
    </message>
</context>
<context>
    <name>ImportPage</name>
    <message>
        <source>Import file</source>
        <translation>导入文件</translation>
    </message>
    <message>
        <source>Select File</source>
        <translation>选择文件</translation>
    </message>
    <message>
        <source>Import</source>
        <translation>导入</translation>
    </message>
    <message>
        <source>Clear list</source>
        <translation>清空列表</translation>
    </message>
    <message>
        <source>The devices of the file are added to the present list.</source>
        <translation>文件中的设备将添加到当前列表。</translation>
    </message>
    <message>
        <source>When checked, the devices of the file are added to the present list; when unchecked, they replace it, and it is kept in the folder backup/.</source>
        <translation>选中时，文件中的设备添加到当前列表；未选中时，文件中的设备替换当前列表，当前列表保存到backup/文件夹。</translation>
    </message>
    <message>
        <source>The devices of the file replace the present list, which is kept in the folder backup/.</source>
        <translation>文件中的设备将替换当前列表，当前列表保存到backup/文件夹。</translation>
    </message>
    <message>
        <source>Choose a file to see here what its import will do.</source>
        <translation>请选择文件，这里会显示导入的结果。</translation>
    </message>
    <message>
        <source>Looking at the file...</source>
        <translation>正在查看文件…</translation>
    </message>
    <message>
        <source>1 row</source>
        <translation>1 行</translation>
    </message>
    <message>
        <source>%1 rows</source>
        <translation>%1 行</translation>
    </message>
    <message>
        <source>%1, %2: %3 new, %4 in place of listed devices.</source>
        <comment>encoding, rows in the file</comment>
        <translation>%1，%2：新增 %3 台，替换列表中的设备 %4 台。</translation>
    </message>
    <message>
        <source>Rows that repeat a MAC of the file: %1.</source>
        <translation>文件内MAC重复的行：%1。</translation>
    </message>
    <message>
        <source>Listed devices that are not in the file and stay: %1.</source>
        <translation>列表中有而文件中没有、将保留的设备：%1 台。</translation>
    </message>
    <message>
        <source>Listed devices that are not in the file and go: %1.</source>
        <translation>列表中有而文件中没有、将移除的设备：%1 台。</translation>
    </message>
    <message>
        <source>The file has every listed device.</source>
        <translation>列表中的设备在文件中都有。</translation>
    </message>
</context>
<context>
    <name>IpLine</name>
    <message>
        <source>Stored: %1</source>
        <translation>已存储：%1</translation>
    </message>
    <message>
        <source>%1 %2 of %3</source>
        <translation>%1，第%2段，共%3段</translation>
    </message>
    <message>
        <source>information</source>
        <translation>提示</translation>
    </message>
    <message>
        <source>Incomplete address</source>
        <translation>地址不完整</translation>
    </message>
    <message>
        <source>Incomplete address. Press Enter again to save it as it is.</source>
        <translation>地址不完整。再按一次回车键将按原样保存。</translation>
    </message>
</context>
<context>
    <name>IpPart</name>
    <message>
        <source>This text is no such address.</source>
        <translation>此文本不是有效的地址。</translation>
    </message>
    <message>
        <source>A MAC address has the digits 0 to 9 and A to F.</source>
        <translation>MAC地址只含数字0至9和字母A至F。</translation>
    </message>
    <message>
        <source>An IP address has the digits 0 to 9.</source>
        <translation>IP地址只含数字0至9。</translation>
    </message>
    <message>
        <source>No part of an IP address exceeds 255.</source>
        <translation>IP地址的每一段不能大于255。</translation>
    </message>
    <message>
        <source>This part is complete. Select it to type over it.</source>
        <translation>这一段已填满。选中后可重新输入。</translation>
    </message>
</context>
<context>
    <name>LanguageSetting</name>
    <message>
        <source>Language change</source>
        <translation>语言更改</translation>
    </message>
    <message>
        <source>Language change will take effect after reboot.</source>
        <translation>语言更改将在重新启动程序后生效。</translation>
    </message>
</context>
<context>
    <name>LanguageTable</name>
    <message>
        <source>English(US)</source>
        <translation>英语（美国）</translation>
    </message>
    <message>
        <source>Simplified Chinese</source>
        <translation>简体中文</translation>
    </message>
    <message>
        <source>Chinese Traditional</source>
        <translation>繁体中文</translation>
    </message>
    <message>
        <source>Korean</source>
        <translation>韩语</translation>
    </message>
    <message>
        <source>Spanish</source>
        <translation>西班牙语</translation>
    </message>
    <message>
        <source>Dutch</source>
        <extracomment>The phone will speak the language of the code, which is German.</extracomment>
        <translation>德语</translation>
    </message>
    <message>
        <source>French</source>
        <translation>法语</translation>
    </message>
    <message>
        <source>Italian</source>
        <translation>意大利语</translation>
    </message>
    <message>
        <source>Japanese</source>
        <translation>日语</translation>
    </message>
    <message>
        <source>Russian</source>
        <translation>俄语</translation>
    </message>
    <message>
        <source>Poland</source>
        <translation>波兰语</translation>
    </message>
    <message>
        <source>Holland</source>
        <translation>荷兰语</translation>
    </message>
    <message>
        <source>Magyar</source>
        <translation>匈牙利语</translation>
    </message>
    <message>
        <source>Finland</source>
        <translation>芬兰语</translation>
    </message>
    <message>
        <source>Norsk</source>
        <translation>挪威语</translation>
    </message>
    <message>
        <source>Sweden</source>
        <translation>瑞典语</translation>
    </message>
    <message>
        <source>Danish</source>
        <translation>丹麦语</translation>
    </message>
    <message>
        <source>Czech</source>
        <translation>捷克语</translation>
    </message>
    <message>
        <source>Portugal</source>
        <translation>葡萄牙语</translation>
    </message>
    <message>
        <source>English(UK)</source>
        <translation>英语（英国）</translation>
    </message>
    <message>
        <source>Thailand</source>
        <translation>泰语</translation>
    </message>
</context>
<context>
    <name>ListBoxes</name>
    <message>
        <source>Save Error</source>
        <translation>保存失败</translation>
    </message>
    <message>
        <source>The device list can not be saved: %1. A copy of it is kept in %2.</source>
        <translation>无法保存设备列表：%1。设备列表的副本已保存在%2。</translation>
    </message>
    <message>
        <source>Neither the device list nor a copy of it can be written: %1. Do you want to quit and lose the changes?</source>
        <translation>设备列表及其副本均无法写入：%1。是否退出并放弃更改？</translation>
    </message>
    <message>
        <source> has already exist</source>
        <translation>已存在</translation>
    </message>
    <message>
        <source>,</source>
        <translation>，</translation>
    </message>
    <message>
        <source>do you want to replace it?</source>
        <translation>是否替换？</translation>
    </message>
    <message>
        <source>Replace action</source>
        <translation>替换确认</translation>
    </message>
    <message>
        <source>The device list can not be saved: %1. It is kept in the window and will be saved with the next change.</source>
        <translation>无法保存设备列表：%1。列表仍保留在窗口中，将在下次更改时保存。</translation>
    </message>
    <message>
        <source>The device list can not be saved: %1. It is kept in the window, and a copy is written when the program ends.</source>
        <translation>无法保存设备列表：%1。列表仍保留在窗口中，程序退出时将写入一份副本。</translation>
    </message>
    <message>
        <source>The backup of the device list can not be written: %1. Do you want to go on without a backup?</source>
        <translation>无法写入设备列表的备份：%1。是否在没有备份的情况下继续？</translation>
    </message>
    <message>
        <source>Backup Error</source>
        <translation>备份失败</translation>
    </message>
    <message>
        <source>Backup</source>
        <translation>备份</translation>
    </message>
    <message>
        <source>phonebook.db held rows that are not in this list. The list is saved over them, and the file as it was is kept in %1.</source>
        <translation>phonebook.db 中有不在此列表中的记录。保存列表时它们已被覆盖，原文件保留在 %1。</translation>
    </message>
    <message>
        <source>The device list can not be changed: %1.</source>
        <translation>无法更改设备列表：%1。</translation>
    </message>
</context>
<context>
    <name>ListStore</name>
    <message>
        <source>the list is in use by the program &quot;%1&quot; on the computer &quot;%2&quot; (process %3). If that program no longer runs, remove the file %4</source>
        <translation>该列表正由计算机“%2”上的程序“%1”（进程 %3）使用。如果该程序已不再运行，请删除文件 %4</translation>
    </message>
</context>
<context>
    <name>LoadingWidget</name>
    <message>
        <source>Operating,please wait.</source>
        <translation>正在处理，请稍候。</translation>
    </message>
</context>
<context>
    <name>MainMenu</name>
    <message>
        <source>&amp;File</source>
        <translation>文件(&amp;F)</translation>
    </message>
    <message>
        <source>&amp;New</source>
        <translation>新建(&amp;N)</translation>
    </message>
    <message>
        <source>construct a new device</source>
        <translation>新建一台设备</translation>
    </message>
    <message>
        <source>&amp;News</source>
        <translation>批量新建(&amp;B)</translation>
    </message>
    <message>
        <source>construct new devices</source>
        <translation>批量新建设备</translation>
    </message>
    <message>
        <source>&amp;Exit</source>
        <translation>退出(&amp;X)</translation>
    </message>
    <message>
        <source>Quit program</source>
        <translation>退出程序</translation>
    </message>
    <message>
        <source>&amp;Import</source>
        <translation>导入(&amp;I)</translation>
    </message>
    <message>
        <source>&amp;Local Import</source>
        <translation>本地导入(&amp;L)</translation>
    </message>
    <message>
        <source>Import file local</source>
        <translation>从本地文件导入</translation>
    </message>
    <message>
        <source>&amp;Export</source>
        <translation>导出(&amp;E)</translation>
    </message>
    <message>
        <source>&amp;Local Export</source>
        <translation>本地导出(&amp;L)</translation>
    </message>
    <message>
        <source>Export file local</source>
        <translation>导出到本地文件</translation>
    </message>
    <message>
        <source>&amp;Httpd</source>
        <translation>HTTPD服务(&amp;H)</translation>
    </message>
    <message>
        <source>Open httpd service</source>
        <translation>开启HTTPD服务</translation>
    </message>
    <message>
        <source>&amp;Language</source>
        <translation>语言(&amp;L)</translation>
    </message>
    <message>
        <source>&amp;Options</source>
        <translation>选项(&amp;O)</translation>
    </message>
    <message>
        <source>Configure Httpd Port</source>
        <translation>配置HTTPD端口</translation>
    </message>
    <message>
        <source>&amp;Help</source>
        <translation>帮助(&amp;H)</translation>
    </message>
    <message>
        <source>Help</source>
        <translation>帮助</translation>
    </message>
    <message>
        <source>User Guide Help</source>
        <translation>用户指南</translation>
    </message>
    <message>
        <source>&amp;About</source>
        <translation>关于(&amp;A)</translation>
    </message>
    <message>
        <source>About</source>
        <translation>关于</translation>
    </message>
    <message>
        <source>Show about info</source>
        <translation>显示本程序的信息</translation>
    </message>
</context>
<context>
    <name>MainWindow</name>
    <message>
        <source>Velloran Device Management Tool</source>
        <translation>Velloran设备管理工具</translation>
    </message>
    <message>
        <source>Database Error</source>
        <translation>数据库错误</translation>
    </message>
    <message>
        <source>The device list in phonebook.db can not be read: %1. The file is left untouched and nothing will be saved in this run.</source>
        <translation>无法读取phonebook.db中的设备列表：%1。该文件保持不变，本次运行不会保存任何内容。</translation>
    </message>
    <message>
        <source>The device list is being read...</source>
        <translation>正在读取设备列表…</translation>
    </message>
</context>
<context>
    <name>Modal</name>
    <message>
        <source>Yes</source>
        <translation>是</translation>
    </message>
    <message>
        <source>No</source>
        <translation>否</translation>
    </message>
    <message>
        <source>Yes to All</source>
        <translation>全是</translation>
    </message>
    <message>
        <source>No to All</source>
        <translation>全否</translation>
    </message>
</context>
<context>
    <name>NetCardItem</name>
    <message>
        <source>No IP</source>
        <translation>无IP</translation>
    </message>
</context>
<context>
    <name>NetCardSelectDialog</name>
    <message>
        <source>OK</source>
        <translation>确定</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>取消</translation>
    </message>
    <message>
        <source>Select avaliable NIC</source>
        <translation>选择可用网卡</translation>
    </message>
    <message>
        <source>No network card was found.</source>
        <translation>未找到网卡。</translation>
    </message>
</context>
<context>
    <name>NotWritten</name>
    <message>
        <source>%1 can not be written: %2.</source>
        <translation>无法写入 %1：%2。</translation>
    </message>
</context>
<context>
    <name>OptionsSetting</name>
    <message>
        <source>Auto Start</source>
        <translation>开机自动启动</translation>
    </message>
    <message>
        <source>auto start</source>
        <translation>开机时自动启动本程序</translation>
    </message>
    <message>
        <source>Recovery Data</source>
        <translation>恢复数据</translation>
    </message>
    <message>
        <source>recovery data</source>
        <translation>启动时恢复上次的设备数据</translation>
    </message>
    <message>
        <source>Auto Httpd</source>
        <translation>自动开启HTTPD</translation>
    </message>
    <message>
        <source>auto httpd</source>
        <translation>启动时自动开启HTTPD服务</translation>
    </message>
    <message>
        <source>Options change</source>
        <translation>选项更改</translation>
    </message>
    <message>
        <source>Config&apos;s change will take effect after reboot.</source>
        <translation>配置更改将在重新启动程序后生效。</translation>
    </message>
</context>
<context>
    <name>PathPage</name>
    <message>
        <source>Cancel</source>
        <translation>取消</translation>
    </message>
</context>
<context>
    <name>PhonesSeen</name>
    <message>
        <source>This phone has not asked for its file since the program was started.</source>
        <translation>程序启动以来，此话机尚未请求其文件。</translation>
    </message>
    <message>
        <source>This phone last asked for its file at %1 from %2: %3.</source>
        <translation>此话机最近一次请求文件：%1，来自 %2，%3。</translation>
    </message>
</context>
<context>
    <name>PortDialog</name>
    <message>
        <source>Use the Default Port 80:</source>
        <translation>使用默认端口80：</translation>
    </message>
    <message>
        <source>OK</source>
        <translation>确定</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>取消</translation>
    </message>
    <message>
        <source>Configure Httpd Port</source>
        <translation>配置HTTPD端口</translation>
    </message>
    <message>
        <source>Custom Port (5000-65535):</source>
        <translation>自定义端口（5000-65535）：</translation>
    </message>
    <message>
        <source>A running HTTPD keeps its port until it is closed and opened again.</source>
        <translation>正在运行的HTTPD仍使用原端口，关闭并重新开启后才使用新端口。</translation>
    </message>
</context>
<context>
    <name>PortSetting</name>
    <message>
        <source>Port Error</source>
        <translation>端口错误</translation>
    </message>
    <message>
        <source>The port should between 5000 and 65535!</source>
        <translation>端口应在5000到65535之间！</translation>
    </message>
</context>
<context>
    <name>ReportBox</name>
    <message>
        <source>HTTPD server request informations</source>
        <translation>HTTPD服务器请求信息</translation>
    </message>
</context>
<context>
    <name>RequestEnd</name>
    <message>
        <source>sent %1 bytes</source>
        <translation>已发送 %1 字节</translation>
    </message>
    <message>
        <source>the phone gave up after %1 bytes</source>
        <translation>话机在收到 %1 字节后放弃</translation>
    </message>
    <message>
        <source>no answer, not in the list</source>
        <translation>未应答，不在列表中</translation>
    </message>
    <message>
        <source>no answer, the document could not be written</source>
        <translation>未应答，无法写入文件</translation>
    </message>
    <message>
        <source>no answer, such a file name is refused</source>
        <translation>未应答，拒绝此类文件名</translation>
    </message>
    <message>
        <source>no answer, no document was asked for</source>
        <translation>未应答，未请求配置文件</translation>
    </message>
    <message>
        <source>no answer, nothing was asked</source>
        <translation>未应答，没有收到请求</translation>
    </message>
    <message>
        <source>cut off after %1 bytes, to make room for other phones</source>
        <translation>发送 %1 字节后被断开，以便为其他话机腾出位置</translation>
    </message>
    <message>
        <source>cut off after %1 bytes, as the service was closed</source>
        <translation>发送 %1 字节后被断开，因为服务已关闭</translation>
    </message>
    <message>
        <source>told where its file is</source>
        <translation>已告知其文件位置</translation>
    </message>
    <message>
        <source>no answer, the request is malformed</source>
        <translation>未应答，请求格式有误</translation>
    </message>
    <message>
        <source>no answer, the request was repeated at once</source>
        <translation>未应答，请求随即重复</translation>
    </message>
    <message>
        <source>no answer, it would go to another network</source>
        <translation>未应答，应答会发往其他网络</translation>
    </message>
    <message>
        <source>no answer, it would come back or go to everybody</source>
        <translation>未应答，应答会返回本机或发给所有主机</translation>
    </message>
    <message>
        <source>no answer, the request is too short for it</source>
        <translation>未应答，请求相对应答过短</translation>
    </message>
    <message>
        <source>no answer, too many requests</source>
        <translation>未应答，请求过于频繁</translation>
    </message>
    <message>
        <source>the answer could not be sent</source>
        <translation>无法发送应答</translation>
    </message>
    <message>
        <source>%1: %2</source>
        <translation>%1：%2</translation>
    </message>
    <message>
        <source>refused, not in the list</source>
        <translation>已拒绝，不在列表中</translation>
    </message>
    <message>
        <source>%1: plug and play, %2</source>
        <translation>%1：即插即用，%2</translation>
    </message>
    <message>
        <source>%1: plug and play of %2, %3</source>
        <translation>%1：%2 的即插即用，%3</translation>
    </message>
</context>
<context>
    <name>SearchBar</name>
    <message>
        <source>Search %1</source>
        <translation>搜索%1</translation>
    </message>
</context>
<context>
    <name>ServiceFlow</name>
    <message>
        <source>ServerIP:%1</source>
        <translation>服务器IP：%1</translation>
    </message>
    <message>
        <source>ServerIP%1:%2</source>
        <translation>服务器IP%1：%2</translation>
    </message>
    <message>
        <source>Port:%1</source>
        <translation>端口：%1</translation>
    </message>
    <message>
        <source>HTTPD server is running.</source>
        <translation>HTTPD服务器正在运行。</translation>
    </message>
    <message>
        <source>PNP service requires HTTPD enabled, please open HTTPD service first!</source>
        <translation>PNP服务依赖HTTPD服务，请先开启HTTPD服务！</translation>
    </message>
    <message>
        <source>PNP service requires 5060 port, please stop other occupied service and try again!</source>
        <translation>PNP服务需要使用5060端口，请先停止占用该端口的其他服务，然后重试！</translation>
    </message>
    <message>
        <source>Enable PNP Server</source>
        <translation>启用PNP服务器</translation>
    </message>
</context>
<context>
    <name>SqliteDatabase</name>
    <message>
        <source>the database is in use by another program</source>
        <translation>数据库正被其他程序使用</translation>
    </message>
    <message>
        <source>the database is read-only</source>
        <translation>数据库为只读</translation>
    </message>
    <message>
        <source>reading or writing the disk failed</source>
        <translation>磁盘读写失败</translation>
    </message>
    <message>
        <source>the database is damaged</source>
        <translation>数据库已损坏</translation>
    </message>
    <message>
        <source>the disk is full</source>
        <translation>磁盘已满</translation>
    </message>
    <message>
        <source>the database can not be opened</source>
        <translation>无法打开数据库</translation>
    </message>
    <message>
        <source>the file is not a database</source>
        <translation>该文件不是数据库文件</translation>
    </message>
    <message>
        <source>the database is not open</source>
        <translation>数据库未打开</translation>
    </message>
    <message>
        <source>the last save was cut short, which the next start of the program puts right</source>
        <translation>上次保存被中断，下次启动程序时会自动修复</translation>
    </message>
    <message>
        <source>a newer version of this program has written the database</source>
        <translation>数据库由本程序的较新版本写入</translation>
    </message>
    <message>
        <source>another file has taken its place</source>
        <translation>它已被另一个文件取代</translation>
    </message>
</context>
<context>
    <name>UndoBar</name>
    <message>
        <source>%1, %2 replaced</source>
        <translation>%1，其中替换 %2 台</translation>
    </message>
    <message>
        <source>Added %1</source>
        <translation>已添加 %1</translation>
    </message>
    <message>
        <source>Replaced %1</source>
        <translation>已替换 %1</translation>
    </message>
    <message>
        <source>%1 devices added</source>
        <translation>已添加 %1 台设备</translation>
    </message>
    <message>
        <source>Changed %1</source>
        <translation>已修改 %1</translation>
    </message>
    <message>
        <source>A device changed, another replaced</source>
        <translation>已修改一台设备，并替换另一台</translation>
    </message>
    <message>
        <source>Deleted %1</source>
        <translation>已删除 %1</translation>
    </message>
    <message>
        <source>All devices deleted: %1</source>
        <translation>已删除全部设备：%1 台</translation>
    </message>
    <message>
        <source>Imported %1</source>
        <translation>已导入 %1</translation>
    </message>
    <message>
        <source>%1 devices imported</source>
        <translation>已导入 %1 台设备</translation>
    </message>
    <message>
        <source>Undo</source>
        <translation>撤销</translation>
    </message>
    <message>
        <source>Undone: %1</source>
        <translation>已撤销：%1</translation>
    </message>
    <message>
        <source>Redo</source>
        <translation>重做</translation>
    </message>
</context>
<context>
    <name>UserGuide</name>
    <message>
        <source>Create single device</source>
        <translation>新建单台设备</translation>
    </message>
    <message>
        <source>You can click on the New File to create a new device. Fill in all the nessesary messages like MAC, SIP Authentication ID, SIP Authentication Password and so on, then click save.</source>
        <translation>点击“新建”可以创建一台新设备。填写MAC、SIP鉴权ID、SIP鉴权密码等必要信息，然后点击“保存”。</translation>
    </message>
    <message>
        <source>Create several devices by order</source>
        <translation>按顺序批量新建设备</translation>
    </message>
    <message>
        <source>Click on the Create by order button to create several devices with MAC and User ID increased by integer you determined, Fill in other messages useful to you, then click save.</source>
        <translation>点击“批量新建”可以创建多台设备，其MAC和用户ID按您指定的整数递增。填写其他需要的信息，然后点击“保存”。</translation>
    </message>
    <message>
        <source>Import an exist device file</source>
        <translation>导入已有的设备文件</translation>
    </message>
    <message>
        <source>By clicking Import button on the menu bar, you can select a csv format file that contains several device information to import.</source>
        <translation>点击菜单栏中的“导入”，可以选择一个包含多台设备信息的CSV格式文件进行导入。</translation>
    </message>
    <message>
        <source>Export current devices</source>
        <translation>导出当前设备</translation>
    </message>
    <message>
        <source>You can export all existed device infomation in the tool to where you want to place it, exported file&apos;s name is devices.csv. You can edit it with Office Excel.</source>
        <translation>您可以将本工具中的全部设备信息导出到指定位置，导出的文件名为devices.csv，可以用Office Excel编辑。</translation>
    </message>
    <message>
        <source>View and Modifications</source>
        <translation>查看与修改</translation>
    </message>
    <message>
        <source>Clicking eye looked icon belongs to every single item can popup a dialog that is same with New File dialog that contains all messages of the device you have clicked. You can also do some modifications in the dialog, click save to take effect.</source>
        <translation>点击每一行中的眼睛图标，会弹出与新建设备相同的对话框，其中显示该设备的全部信息。您也可以在对话框中进行修改，点击“保存”后生效。</translation>
    </message>
    <message>
        <source>Search by keyword</source>
        <translation>按关键字搜索</translation>
    </message>
    <message>
        <source>You can search the device you want to by entering keyword in input box above every column. Such as MAC, IP and so on.</source>
        <translation>在各列上方的输入框中输入关键字（如MAC、IP等），即可搜索所需的设备。</translation>
    </message>
    <message>
        <source>Language Option</source>
        <translation>语言选项</translation>
    </message>
    <message>
        <source>Select the menu language options, the current tool support between Chinese and english. And the language switch will start after reboot take effect.</source>
        <translation>在“语言”菜单中选择语言，本工具目前支持中文和英文。切换语言后，重新启动本工具即可生效。</translation>
    </message>
    <message>
        <source>Other config options</source>
        <translation>其他配置选项</translation>
    </message>
    <message>
        <source>Select the menu option button, tool provides some config options include startup boot, edit recovery and auto httpd server. Startup boot means Start up tool with your pc. Edit recovery means recovery the status of the tool&apos;s last save and exit. Automaticly Open httpd server when you pitch on the menu of auto httpd server.</source>
        <translation>在“选项”菜单中，本工具提供开机自动启动、自动开启HTTPD和配置HTTPD端口等选项。“开机自动启动”表示本工具随电脑一起启动；选中“自动开启HTTPD”后，将自动开启HTTPD服务器。本工具启动时会恢复上次保存的设备列表，无需选择菜单项。</translation>
    </message>
    <message>
        <source>Httpd Server and PNP Server</source>
        <translation>HTTPD服务器与PNP服务器</translation>
    </message>
    <message>
        <source>Click Open Httpd Server button to start a http server to provide CFG when some devices is asking for it, PNP Server is used to broadcast Config Server Path to every exist device in tool which is httpd server path in fact. These two servers provide a convinent way to apply CFG change to all devices in the tool.</source>
        <translation>点击“开启HTTPD”可以启动HTTP服务器，在设备请求时提供配置文件。PNP服务器用于向本工具中的每台设备通告配置服务器路径，该路径就是HTTPD服务器的地址。通过这两个服务器，可以方便地将配置更改应用到本工具中的全部设备。</translation>
    </message>
    <message>
        <source>Previous page</source>
        <translation>上一页</translation>
    </message>
    <message>
        <source>Next page</source>
        <translation>下一页</translation>
    </message>
    <message>
        <source>Velloran Device Management Tool Help</source>
        <translation>Velloran设备管理工具帮助</translation>
    </message>
</context>
<context>
    <name>WholeFile</name>
    <message>
        <source>the disk is full</source>
        <translation>磁盘已满</translation>
    </message>
    <message>
        <source>the file is too large</source>
        <translation>文件过大</translation>
    </message>
    <message>
        <source>the disk is read-only</source>
        <translation>磁盘为只读</translation>
    </message>
    <message>
        <source>the permission to write is missing</source>
        <translation>没有写入权限</translation>
    </message>
    <message>
        <source>the folder does not exist</source>
        <translation>文件夹不存在</translation>
    </message>
    <message>
        <source>a folder has the file&apos;s name</source>
        <translation>已有同名文件夹</translation>
    </message>
    <message>
        <source>the file is in use by another program</source>
        <translation>文件正被其他程序使用</translation>
    </message>
    <message>
        <source>reading or writing the disk failed</source>
        <translation>读写磁盘失败</translation>
    </message>
</context>
</TS>
